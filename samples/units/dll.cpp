// SampleUnits.dll: three unit operations of CAPE-OPEN 1.0 that differ in how they are saved.
#include "samples/component/dll.h"
#include "samples/units/mixer_heater.h"
#include "samples/units/splitter.h"
#include "samples/units/valve.h"

namespace {

using namespace zelt::sample;

const com::ClassEntry kClasses[] = {
    {kMixerHeaterClass, com::CreateDefault<MixerHeater>},
    {kValveClass, com::CreateDefault<Valve>},
    {kSplitterClass, com::CreateDefault<Splitter>},
};

const ComponentClass kRegistrations[] = {
    {kMixerHeaterClass,
     L"ZeltSample.MixerHeater",
     L"Sample mixer with heater",
     MixerHeaterModel::kDescription,
     L"1.0",
     {kUnitOperation10, kCapeOpenObject}},
    {kValveClass,
     L"ZeltSample.Valve",
     L"Sample valve",
     ValveModel::kDescription,
     L"1.0",
     {kUnitOperation10, kCapeOpenObject}},
    {kSplitterClass,
     L"ZeltSample.Splitter",
     L"Sample splitter",
     SplitterModel::kDescription,
     L"1.0",
     {kUnitOperation10, kCapeOpenObject}},
};

}  // namespace

SAMPLE_DLL_EXPORTS(kClasses, kRegistrations)
