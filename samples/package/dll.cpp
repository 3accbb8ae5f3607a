// SamplePackage.dll: for both versions of the standard, the class that makes packages by name, and one package as its
// own class.
#include "samples/component/dll.h"
#include "samples/package/classes.h"
#include "samples/package/property_package.h"
#include "samples/package/property_package10.h"
#include "samples/package/property_package_manager.h"
#include "samples/package/thermo_system.h"

namespace {

using namespace zelt::sample;

const com::ClassEntry kClasses[] = {
    {kPropertyPackageManagerClass, com::CreateDefault<PropertyPackageManager>},
    {kPropertyPackageClass, com::CreateDefault<PropertyPackage>},
    {kThermoSystemClass, com::CreateDefault<ThermoSystem>},
    {kPropertyPackage10Class, com::CreateDefault<PropertyPackage10>},
};

const ComponentClass kRegistrations[] = {
    {kPropertyPackageManagerClass,
     L"ZeltSample.PropertyPackageManager",
     L"Sample property package manager",
     L"Ideal solutions of a few common compounds",
     L"1.1",
     {kPropertyPackageManager11, kCapeOpenObject}},
    {kPropertyPackageClass,
     L"ZeltSample.PropertyPackage",
     L"Sample property package",
     L"Benzene, toluene and o-xylene as an ideal solution",
     L"1.1",
     {kPropertyPackage11, kCapeOpenObject}},
    {kThermoSystemClass,
     L"ZeltSample.ThermoSystem",
     L"Sample thermo system",
     L"Ideal solutions of a few common compounds",
     L"1.0",
     {kThermoSystem10, kCapeOpenObject}},
    {kPropertyPackage10Class,
     L"ZeltSample.PropertyPackage10",
     L"Sample property package (CAPE-OPEN 1.0)",
     L"Benzene, toluene and o-xylene as an ideal solution",
     L"1.0",
     {kPropertyPackage10, kCapeOpenObject}},
};

}  // namespace

SAMPLE_DLL_EXPORTS(kClasses, kRegistrations)
