// SamplePackage.dll: the manager, and one package as a class of its own.
#include "samples/component/dll.h"
#include "samples/package/classes.h"
#include "samples/package/property_package.h"
#include "samples/package/property_package_manager.h"

namespace {

using namespace zelt::sample;

const com::ClassEntry kClasses[] = {
    {kPropertyPackageManagerClass, com::CreateDefault<PropertyPackageManager>},
    {kPropertyPackageClass, com::CreateDefault<PropertyPackage>},
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
};

}  // namespace

SAMPLE_DLL_EXPORTS(kClasses, kRegistrations)
