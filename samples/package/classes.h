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
// {B8C3C630-1254-403A-B34B-6DE04DB571AB}, ZeltSample.ThermoSystem
inline constexpr CLSID kThermoSystemClass = {
    0xB8C3C630, 0x1254, 0x403A, {0xB3, 0x4B, 0x6D, 0xE0, 0x4D, 0xB5, 0x71, 0xAB}};
// {2D2F66B0-9D34-4AF4-9454-5B24798A32BA}, ZeltSample.PropertyPackage10
inline constexpr CLSID kPropertyPackage10Class = {
    0x2D2F66B0, 0x9D34, 0x4AF4, {0x94, 0x54, 0x5B, 0x24, 0x79, 0x8A, 0x32, 0xBA}};

}  // namespace zelt::sample
