// The classes of FieldComponents.dll.
#pragma once

#include <guiddef.h>

namespace zelt::sample {

// {E3F1F143-2597-4B98-B0E4-BB6D45858935}, ZeltSample.FieldPackage
inline constexpr CLSID kFieldPackageClass = {
    0xE3F1F143, 0x2597, 0x4B98, {0xB0, 0xE4, 0xBB, 0x6D, 0x45, 0x85, 0x89, 0x35}};
// {BD9C6E4B-BE3F-44EC-8833-B99C6515A123}, ZeltSample.FieldUnit
inline constexpr CLSID kFieldUnitClass = {0xBD9C6E4B, 0xBE3F, 0x44EC, {0x88, 0x33, 0xB9, 0x9C, 0x65, 0x15, 0xA1, 0x23}};
// {F27C7D12-72D9-44A2-9B62-619A0F11AF85}, ZeltSample.LicensedManager
inline constexpr CLSID kLicensedManagerClass = {
    0xF27C7D12, 0x72D9, 0x44A2, {0x9B, 0x62, 0x61, 0x9A, 0x0F, 0x11, 0xAF, 0x85}};

}  // namespace zelt::sample
