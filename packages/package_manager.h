// What the three package managers share: the list of exported names, getting a package by name with the offer to remove one that
// fails, identification, utilities and the error state. A manager keeps nothing between calls except its error, and is not
// logged. A concrete manager adds its one interface.
#pragma once

#include "log/log_options.h"
#include "packages/exported_package_list.h"
#include "packages/error_state.h"
#include "packages/package_family.h"

namespace zelt {

class PackageManager : public com::Object {
protected:
    explicit PackageManager(const PackageFamily& family);
    ~PackageManager() override = default;

    // The exported names of the manager's kinds, in list order: an array of strings, or VT_EMPTY when there are none.
    [[nodiscard]] HRESULT List(VARIANT* names);

    // The package exported under `name`, wrapped. Asks the user whether a package that fails is to stay in the list.
    [[nodiscard]] HRESULT Get(BSTR name, IDispatch** package);

private:
    struct IdentificationPart final : com::DualPart<ICapeIdentification> {
        IdentificationPart(com::Object& object, const PackageFamily& family) : DualPart(object), family(family) {}
        STDMETHOD(get_ComponentName)(BSTR* name) override;
        STDMETHOD(put_ComponentName)(BSTR) override { return E_NOTIMPL; }
        STDMETHOD(get_ComponentDescription)(BSTR* desc) override;
        STDMETHOD(put_ComponentDescription)(BSTR) override { return E_NOTIMPL; }
        const PackageFamily& family;
    };
    struct UtilitiesPart final : com::DualPart<ICapeUtilities> {
        explicit UtilitiesPart(PackageManager& owner) : DualPart(owner), owner(owner) {}
        STDMETHOD(get_parameters)(IDispatch** parameters) override;
        STDMETHOD(put_simulationContext)(IDispatch*) override { return S_OK; }
        STDMETHOD(Initialize)() override { return S_OK; }
        STDMETHOD(Terminate)() override { return S_OK; }
        STDMETHOD(Edit)() override { return owner.Edit(); }
        PackageManager& owner;
    };

    // E_NOTIMPL, unless the user wants Edit to be forwarded to the managers that the exported packages come from.
    [[nodiscard]] HRESULT Edit();
    [[nodiscard]] HRESULT EditManagers();

    bool Serves(const ExportedPackage& package) const;
    [[nodiscard]] HRESULT ListOf(const ExportedPackageList& list, VARIANT* names) const;
    [[nodiscard]] HRESULT OfferRemoval(PackageIdentity record, HRESULT code, const std::wstring& description);
    [[nodiscard]] HRESULT Raise(HRESULT code, const std::wstring& description);

    const PackageFamily& family;
    IdentificationPart identification;
    UtilitiesPart utilities;
    ErrorState error;
};

}  // namespace zelt
