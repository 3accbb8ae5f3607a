#include "samples/package/property_package_manager.h"

#include "samples/component/text.h"
#include "samples/component/variant.h"
#include "samples/package/property_package.h"

namespace zelt::sample {

STDMETHODIMP PackageManagerPart::GetPropertyPackageList(VARIANT* packageNames)
{
    return Call(L"GetPropertyPackageList", [&] {
        std::vector<std::wstring> names;
        for (const PackageDefinition& definition : AllPackages()) names.emplace_back(definition.name);
        Return(packageNames, MakeStrings(names));
    });
}

STDMETHODIMP PackageManagerPart::GetPropertyPackage(BSTR packageName, IDispatch** package)
{
    if (!package) return E_POINTER;
    *package = nullptr;
    return Call(L"GetPropertyPackage", [&] {
        const PackageDefinition* definition = FindPackage(TextOf(packageName));
        if (!definition) {
            throw CapeFailure(ECapeInvalidArgumentHR, L"There is no property package " + Quoted(TextOf(packageName)));
        }
        CheckCall(com::Create<PropertyPackage>(IID_IDispatch, reinterpret_cast<void**>(package), *definition), nullptr,
                  L"Property package");
    });
}

}  // namespace zelt::sample
