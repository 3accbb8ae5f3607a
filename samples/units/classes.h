// The classes of SampleUnits.dll.
#pragma once

#include <guiddef.h>

namespace zelt::sample {

// {185B0461-60DB-4454-A0FE-4A0D07620792}, ZeltSample.MixerHeater
inline constexpr CLSID kMixerHeaterClass = {
    0x185B0461, 0x60DB, 0x4454, {0xA0, 0xFE, 0x4A, 0x0D, 0x07, 0x62, 0x07, 0x92}};
// {34EB525A-7516-49B9-8D8E-897F4615EFE7}, ZeltSample.Valve
inline constexpr CLSID kValveClass = {0x34EB525A, 0x7516, 0x49B9, {0x8D, 0x8E, 0x89, 0x7F, 0x46, 0x15, 0xEF, 0xE7}};
// {06CFC2D2-51B0-44C9-ABD7-DE63151D3C93}, ZeltSample.Splitter
inline constexpr CLSID kSplitterClass = {0x06CFC2D2, 0x51B0, 0x44C9, {0xAB, 0xD7, 0xDE, 0x63, 0x15, 0x1D, 0x3C, 0x93}};

}  // namespace zelt::sample
