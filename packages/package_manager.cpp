#include "packages/package_manager.h"

#include <oleauto.h>
#include <wrl/client.h>

#include <algorithm>
#include <vector>

#include "com/text.h"
#include "log/error_description.h"
#include "system/dialogs/message_box.h"
#include "system/narrow.h"
#include "system/owners.h"
#include "packages/package_creation.h"
#include "packages/package_failure.h"
#include "packages/package_kinds.h"

namespace zelt {
PackageManager::PackageManager(const PackageFamily& family)
    : family(family), identification(*this, family), utilities(*this), error(*this, family.foreignInterface)
{}

bool PackageManager::Serves(const ExportedPackage& package) const
{
    const PackageKindRow* kind = FindPackageKind(package.kind);
    return kind && &kind->family == &family;
}

HRESULT PackageManager::List(VARIANT* names)
{
    if (!names) return E_POINTER;
    VariantInit(names);
    // Loading may show a box, which lets calls in, possibly the caller's last Release.
    const Microsoft::WRL::ComPtr<IUnknown> hold(this);
    return com::NoThrow([&] { return ListOf(ServedPackages(), names); });
}

HRESULT PackageManager::ListOf(const ExportedPackageList& list, VARIANT* names) const
{
    ULONG count = 0;
    for (std::size_t i = 0; i < list.Count(); ++i) count += Serves(list.At(i));
    if (count == 0) return S_OK;

    UniqueArray array(SafeArrayCreateVector(VT_BSTR, 0, count));
    if (!array) return E_OUTOFMEMORY;
    auto* element = static_cast<BSTR*>(array->pvData);
    for (std::size_t i = 0; i < list.Count(); ++i) {
        if (!Serves(list.At(i))) continue;
        const HRESULT copied = com::NewText(list.At(i).exportedName, element++);
        if (FAILED(copied)) return copied;
    }
    names->vt = VT_ARRAY | VT_BSTR;
    names->parray = array.release();
    return S_OK;
}

HRESULT PackageManager::Get(BSTR name, IDispatch** package)
{
    if (!package) return E_POINTER;
    *package = nullptr;
    // Boxes may come up and let calls in, possibly the caller's last Release.
    const Microsoft::WRL::ComPtr<IUnknown> hold(this);
    return com::NoThrow([&] {
        const ExportedPackageList& list = ServedPackages();
        for (std::size_t i = 0; i < list.Count(); ++i) {
            if (!Serves(list.At(i)) || !SameName(list.At(i).exportedName, TextOf(name))) continue;
            const PackageIdentity record = list.IdentityAt(i);
            try {
                *package = CreateExportedPackage(family, list.At(i), TheLogOptions()).Detach();
                return S_OK;
            } catch (const PackageFailure& failure) {
                return OfferRemoval(record, failure.code, failure.description);
            } catch (...) {
                const std::string text = ErrorText(com::ResultOfException(), nullptr);
                return OfferRemoval(record, static_cast<HRESULT>(ECapeUnknownHR), Widen(text));
            }
        }
        const std::wstring requested = name ? std::wstring(TextOf(name)) : L"NULL";
        return Raise(static_cast<HRESULT>(ECapeInvalidArgumentHR),
                     L"Package with name \"" + requested + L"\" is not available");
    });
}

HRESULT PackageManager::Edit()
{
    LogOptions& options = TheLogOptions();
    // Another program may have changed the option.
    com::Attempt([&] { static_cast<void>(options.Load()); });
    if (!options.forwardManagerEdit) return E_NOTIMPL;
    // The managers' dialogs let calls in, possibly the caller's last Release.
    const Microsoft::WRL::ComPtr<IUnknown> hold(this);
    return com::NoThrow([&] {
        try {
            return EditManagers();
        } catch (const PackageFailure& failure) {
            return error.Raise(failure.code, failure.description, L"Edit", L"ICapeUtilities");
        }
    });
}

// Opens the managers' dialogs one after the other, in the order in which the list first names the managers. S_OK when one of
// them has changed something, S_FALSE when none has, E_NOTIMPL when there is no dialog.
HRESULT PackageManager::EditManagers()
{
    // Collected first: the list may change while a dialog is open.
    std::vector<CLSID> managers;
    const ExportedPackageList& list = ServedPackages();
    for (std::size_t i = 0; i < list.Count(); ++i) {
        const ExportedPackage& package = list.At(i);
        if (!Serves(package) || !IsManager(package.kind)) continue;
        if (std::find(managers.begin(), managers.end(), package.classId) == managers.end()) {
            managers.push_back(package.classId);
        }
    }
    HRESULT result = E_NOTIMPL;
    for (const CLSID& manager : managers) {
        const HRESULT edited = EditForeignManager(family, manager);
        if (edited == E_NOTIMPL) continue;
        if (result != S_OK) result = edited;
    }
    return result;
}

HRESULT PackageManager::OfferRemoval(PackageIdentity record, HRESULT code, const std::wstring& description)
{
    // Raised before the box is shown, because a call that the box lets in may already read the error.
    static_cast<void>(Raise(code, description));
    const int answer =
        ShowMessage(description + family.removalPrompt, L"ZELT:", MB_YESNO | MB_ICONQUESTION | MB_TOPMOST);
    if (answer == IDYES) {
        ExportedPackageList& list = ExportedPackages();
        if (const auto index = list.Find(record)) {
            list.Remove(*index);
            const Outcome saved = list.Save();
            list.Refresh();
            ShowFailure(saved);
        }
    }
    // Raised again: calls that the box let in may have raised other errors.
    return Raise(code, description);
}

HRESULT PackageManager::Raise(HRESULT code, const std::wstring& description)
{
    return error.Raise(code, description, family.scope, family.interfaceName);
}

STDMETHODIMP PackageManager::IdentificationPart::get_ComponentName(BSTR* name)
{
    return com::NewText(family.name, name);
}

STDMETHODIMP PackageManager::IdentificationPart::get_ComponentDescription(BSTR* desc)
{
    return com::NewText(family.description, desc);
}

STDMETHODIMP PackageManager::UtilitiesPart::get_parameters(IDispatch** parameters)
{
    if (!parameters) return E_POINTER;
    *parameters = nullptr;
    return S_OK;
}

}  // namespace zelt
