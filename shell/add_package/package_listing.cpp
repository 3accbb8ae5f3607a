#include "shell/add_package/package_listing.h"

#include <cape-open.h>
#include <comutil.h>

#include "core/error_description.h"
#include "core/foreign_call.h"
#include "core/foreign_creation.h"
#include "core/narrow.h"

namespace zelt {
namespace {

constexpr DWORD kAnyServer = CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER | CLSCTX_REMOTE_SERVER;

struct ListingRow {
    PackageKind kind;
    const IID& managerInterface;
    HRESULT (*list)(IUnknown* manager, VARIANT* names);
    const wchar_t* createFailure;
    const wchar_t* initializeFailure;
    const wchar_t* listFailure;
    const wchar_t* badList;
};

// The misspelling in the last row is part of the text.
const ListingRow kRows[] = {
    {PackageKind::PropertyPackage11FromManager, __uuidof(ICapeThermoPropertyPackageManager),
     [](IUnknown* manager, VARIANT* names) {
         return static_cast<ICapeThermoPropertyPackageManager*>(manager)->GetPropertyPackageList(names);
     },
     L"Failed to create property package manager: ", L"Failed to initialize property package manager: ",
     L"Failed to get a list of property packages from property package manager: ",
     L"Invalid list of property packages from property package manager: "},
    {PackageKind::PropertyPackage10FromThermoSystem, __uuidof(ICapeThermoSystem),
     [](IUnknown* manager, VARIANT* names) {
         return static_cast<ICapeThermoSystem*>(manager)->GetPropertyPackages(names);
     },
     L"Failed to create thermo system: ", L"Failed to initialize thermo system: ",
     L"Failed to get a list of property packages from thermo system: ",
     L"Invalid list of property packages from thermo system: "},
    {PackageKind::ReactionPackage10FromManager, __uuidof(ICapeReactionsPackageManager),
     [](IUnknown* manager, VARIANT* names) {
         return static_cast<ICapeReactionsPackageManager*>(manager)->GetListOfReactionsPackages(names);
     },
     L"Failed to create reaction package mananger: ", L"Failed to initialize reaction package manager: ",
     L"Failed to get a list of reaction packages from reaction package manager: ",
     L"Invalid list of reaction packages from reaction package manager: "},
};

const ListingRow* RowOf(PackageKind kind)
{
    for (const ListingRow& row : kRows) {
        if (row.kind == kind) return &row;
    }
    return nullptr;
}

// A manager between Initialize and Terminate, where it has them and the first succeeded.
class InitializedManager {
public:
    InitializedManager(IUnknown* manager, const ListingRow& row, const ListingFailure& failed)
        : utilities(QueryForeign<ICapeUtilities>(manager))
    {
        if (!utilities) return;
        const HRESULT result = CallForeign([&] { return utilities->Initialize(); });
        initialized = SUCCEEDED(result);
        if (!initialized) failed(row.initializeFailure + Widen(ErrorDescription(result, utilities.Get())));
    }
    ~InitializedManager()
    {
        if (initialized) CallForeign([&] { return utilities->Terminate(); });
    }
    InitializedManager(const InitializedManager&) = delete;
    InitializedManager& operator=(const InitializedManager&) = delete;

private:
    ForeignPtr<ICapeUtilities> utilities;
    bool initialized = false;
};

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
    const ListingRow* row = RowOf(kind);
    if (!row) {
        failed(L"Internal error: unknown package manager type");
        return {};
    }
    void* created = nullptr;
    HRESULT result = CreateForeign(classId, kAnyServer, row->managerInterface, &created);
    if (FAILED(result)) {
        failed(row->createFailure + Widen(ErrorDescription(result, nullptr)));
        return {};
    }
    const ForeignPtr<IUnknown> manager(static_cast<IUnknown*>(created));
    const InitializedManager initialized(manager.Get(), *row, failed);
    _variant_t names;
    result = CallForeign([&] { return row->list(manager.Get(), &names); });
    if (FAILED(result)) {
        failed(row->listFailure + Widen(ErrorDescription(result, manager.Get())));
        // What comes with a failure is not to be trusted, nor freed.
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
    if (SUCCEEDED(read)) CallForeign([&] { return VariantClear(&owned); });
    if (!strings) failed(row->badList + Widen(ErrorDescription(DISP_E_TYPEMISMATCH, nullptr)));
    return strings;
}

}  // namespace zelt
