// FieldComponents.dll: components with interfaces and behaviour that occur in the field but not in the other samples.
#include "samples/component/dll.h"
#include "samples/field/classes.h"
#include "samples/field/field_package.h"
#include "samples/field/field_unit.h"
#include "samples/field/licensed_manager.h"

namespace {

using namespace zelt::sample;

const com::ClassEntry kClasses[] = {
    {kFieldPackageClass, com::CreateDefault<FieldPackage>},
    {kFieldUnitClass, com::CreateDefault<FieldUnit>},
    {kLicensedManagerClass, com::CreateDefault<LicensedManager>},
};

const ComponentClass kRegistrations[] = {
    {kFieldPackageClass,
     L"ZeltSample.FieldPackage",
     L"Field property package (CAPE-OPEN 1.0)",
     L"An ideal solution with older interfaces",
     L"1.0",
     {kPropertyPackage10, kCapeOpenObject}},
    {kFieldUnitClass,
     L"ZeltSample.FieldUnit",
     L"Field unit operation",
     FieldUnitModel::kDescription,
     L"1.0",
     {kUnitOperation10, kCapeOpenObject}},
    {kLicensedManagerClass,
     L"ZeltSample.LicensedManager",
     L"Licensed package manager",
     L"Its packages need it",
     L"1.1",
     {kPropertyPackageManager11, kCapeOpenObject}},
};

}  // namespace

SAMPLE_DLL_EXPORTS(kClasses, kRegistrations)
