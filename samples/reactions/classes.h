// The classes of SampleReactions.dll.
#pragma once

#include <guiddef.h>

namespace zelt::sample {

// {21E8D424-AEBF-47C0-BF56-C8721C29DDCA}, ZeltSample.ReactionsPackageManager
inline constexpr CLSID kReactionPackageManagerClass = {
    0x21E8D424, 0xAEBF, 0x47C0, {0xBF, 0x56, 0xC8, 0x72, 0x1C, 0x29, 0xDD, 0xCA}};
// {0F39FE30-B7EA-43D9-8C45-D714CCB21281}, ZeltSample.ReactionsPackage
inline constexpr CLSID kReactionPackageClass = {
    0x0F39FE30, 0xB7EA, 0x43D9, {0x8C, 0x45, 0xD7, 0x14, 0xCC, 0xB2, 0x12, 0x81}};

}  // namespace zelt::sample
