#include "thermo/material_object.h"

namespace zelt {
namespace {

constexpr ProxyTraits kMaterialTraits = {.typeName = "Material Object"};

}  // namespace

CMaterialObject::CMaterialObject(ThermoVersion startingVersion)
    : LoggedProxy(kMaterialTraits),
      startingVersion(startingVersion),
      thermoVersion(startingVersion),
      material(*this),
      compounds(*this),
      phases(*this),
      propertyRoutine(*this),
      equilibriumRoutine(*this),
      universalConstant(*this),
      materialObject10(*this)
{}

void CMaterialObject::UseVersion(ThermoVersion version)
{
    if (thermoVersion == ThermoVersion::Unset) thermoVersion = version;
    if (thermoVersion == version) return;
    if (LogDocument* log = Document()) {
        log->Write(version == ThermoVersion::CapeOpen11 ? Sentence::WrongVersion11 : Sentence::WrongVersion10);
    }
}

IDispatch* CMaterialObject::ChooseScriptInterface()
{
    const bool is10 = startingVersion == ThermoVersion::CapeOpen10 || !Reach(__uuidof(ICapeThermoMaterial));
    return is10 && Reach(__uuidof(ICapeThermoMaterialObject)) ? static_cast<IDispatch*>(&materialObject10) : &material;
}

}  // namespace zelt
