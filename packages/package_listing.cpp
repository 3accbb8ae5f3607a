#include "packages/package_listing.h"

#include <comutil.h>

#include "log/error_description.h"
#include "guard/foreign_creation.h"
#include "packages/initialized_manager.h"
#include "packages/package_kinds.h"
#include "system/narrow.h"

namespace zelt {
namespace {

constexpr DWORD kAnyServer = CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER | CLSCTX_REMOTE_SERVER;

// The strings of a one-dimensional array of BSTRs; nothing for any other value.
std::optional<std::vector<std::wstring>> StringsOf(const VARIANT& value)
{
    if (value.vt != (VT_ARRAY | VT_BSTR) || !value.parray || SafeArrayGetDim(value.parray) != 1) return {};
    LONG lower = 0, upper = -1;
    if (FAILED(SafeArrayGetLBound(value.parray, 1, &lower)) || FAILED(SafeArrayGetUBound(value.parray, 1, &upper))) {
        return {};
    }
    std::vector<std::wstring> strings;
    for (LONG index = lower; index <= upper; ++index) {
        _bstr_t text;
        if (FAILED(SafeArrayGetElement(value.parray, &index, text.GetAddress()))) return {};
        strings.emplace_back(TextOf(text.GetBSTR()));
    }
    return strings;
}

}  // namespace

std::optional<std::vector<std::wstring>> ListPackages(PackageKind kind, REFCLSID classId, const ListingFailure& failed)
{
    const PackageKindRow* row = FindPackageKind(kind);
    if (!row || !IsManager(kind)) {
        failed(L"Internal error: unknown package manager type");
        return {};
    }
    const PackageFamily& family = row->family;
    void* created = nullptr;
    HRESULT result = CreateForeign(classId, kAnyServer, family.foreignInterface, &created);
    if (FAILED(result)) {
        failed(family.listedManagerFailure + Widen(ErrorDescription(result, nullptr)));
        return {};
    }
    const ForeignPtr<IUnknown> manager(static_cast<IUnknown*>(created));
    // A manager that fails to initialize may still have a list.
    const InitializedManager initialized(manager.Get());
    if (FAILED(initialized.Result())) {
        failed(family.listedInitializeFailure +
               Widen(ErrorDescription(initialized.Result(), initialized.ErrorSource())));
    }
    _variant_t names;
    result = CallForeign([&] { return family.listForeignPackages(manager.Get(), &names); });
    if (FAILED(result)) {
        failed(family.listFailure + Widen(ErrorDescription(result, manager.Get())));
        // Neither trust nor free what comes with a failure.
        names.Detach();
        return {};
    }
    std::optional<std::vector<std::wstring>> strings;
    const HRESULT read = CallForeign([&] {
        strings = StringsOf(names);
        return S_OK;
    });
    // What cannot be read cannot be freed either.
    VARIANT owned = names.Detach();
    if (SUCCEEDED(read)) AttemptForeign([&] { VariantClear(&owned); });
    if (!strings) failed(family.badList + Widen(ErrorDescription(DISP_E_TYPEMISMATCH, nullptr)));
    return strings;
}

}  // namespace zelt
