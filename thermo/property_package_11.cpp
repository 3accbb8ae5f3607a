#include "thermo/property_package_11.h"

namespace zelt {
namespace {

constexpr ProxyTraits kPropertyPackageTraits = {.typeName = "Property Package",
                                                .servedVersion = ThermoVersion::CapeOpen11};

}  // namespace

CPropertyPackage11::CPropertyPackage11()
    : ExposedObjectBase(kPropertyPackageTraits),
      materialContext(*this),
      compounds(*this),
      phases(*this),
      propertyRoutine(*this),
      equilibriumRoutine(*this),
      universalConstant(*this),
      persistence(*this)
{}

}  // namespace zelt
