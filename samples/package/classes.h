// The classes of SamplePackage.dll.
#pragma once

#include <guiddef.h>

namespace zelt::sample {

// {B55C9180-454E-4B78-A109-B9536A903BF9}, ZeltSample.PropertyPackageManager
inline constexpr CLSID kPropertyPackageManagerClass = {
    0xB55C9180, 0x454E, 0x4B78, {0xA1, 0x09, 0xB9, 0x53, 0x6A, 0x90, 0x3B, 0xF9}};
// {26100AA3-1793-4E26-BD43-EB046B57CFB0}, ZeltSample.PropertyPackage
inline constexpr CLSID kPropertyPackageClass = {
    0x26100AA3, 0x1793, 0x4E26, {0xBD, 0x43, 0xEB, 0x04, 0x6B, 0x57, 0xCF, 0xB0}};

}  // namespace zelt::sample
