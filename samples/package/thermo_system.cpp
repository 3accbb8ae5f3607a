#include "samples/package/thermo_system.h"

#include "samples/component/text.h"
#include "samples/component/variant.h"
#include "samples/package/property_package10.h"

namespace zelt::sample {

STDMETHODIMP ThermoSystemPart::GetPropertyPackages(VARIANT* propPackageList)
{
    return Call(L"GetPropertyPackages", [&] {
        std::vector<std::wstring> names;
        for (const PackageDefinition& definition : AllPackages()) names.emplace_back(definition.name);
        Return(propPackageList, MakeStrings(names));
    });
}

STDMETHODIMP ThermoSystemPart::ResolvePropertyPackage(BSTR propertyPackage, IDispatch** propPackObject)
{
    if (!propPackObject) return E_POINTER;
    *propPackObject = nullptr;
    return Call(L"ResolvePropertyPackage", [&] {
        const PackageDefinition* definition = FindPackage(TextOf(propertyPackage));
        if (!definition) {
            throw CapeFailure(ECapeInvalidArgumentHR,
                              L"There is no property package " + Quoted(TextOf(propertyPackage)));
        }
        CheckCall(com::Create<PropertyPackage10>(IID_IDispatch, reinterpret_cast<void**>(propPackObject), *definition),
                  nullptr, L"Property package");
    });
}

}  // namespace zelt::sample
