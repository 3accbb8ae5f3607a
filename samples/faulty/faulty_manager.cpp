#include "samples/faulty/faulty_manager.h"

#include "samples/component/text.h"
#include "samples/component/variant.h"
#include "samples/faulty/faulty_package.h"

namespace zelt::sample {
namespace {

// Listed names for which the manager makes no package.
constexpr const wchar_t* kFails = L"Fails";
constexpr const wchar_t* kNull = L"Null";
constexpr const wchar_t* kFault = L"Fault In Create";

void FailToInitialize() { throw CapeFailure(ECapeFailedInitialisationHR, L"The faulty manager never initialises"); }

}  // namespace

STDMETHODIMP FaultyManagerPart::GetPropertyPackageList(VARIANT* packageNames)
{
    return Call(L"GetPropertyPackageList", [&] {
        if (fault == ManagerFault::kList) {
            const long numbers[] = {1, 2, 3};
            Return(packageNames, MakeLongs(numbers));
            return;
        }
        std::vector<std::wstring> names;
        for (const Character& character : AllCharacters()) names.emplace_back(character.name);
        for (const wchar_t* name : {kFails, kNull, kFault}) names.emplace_back(name);
        Return(packageNames, MakeStrings(names));
    });
}

STDMETHODIMP FaultyManagerPart::GetPropertyPackage(BSTR packageName, IDispatch** package)
{
    if (!package) return E_POINTER;
    *package = nullptr;
    const std::wstring_view name = TextOf(packageName);
    if (SameName(name, kNull)) return S_OK;
    if (SameName(name, kFault)) CommitFault(L"nullWrite");
    return Call(L"GetPropertyPackage", [&] {
        if (SameName(name, kFails)) throw CapeFailure(ECapeLicenceErrorHR, L"The faulty package has no licence today");
        for (const Character& character : AllCharacters()) {
            if (!SameName(name, character.name)) continue;
            CheckCall(com::Create<FaultyPackage>(IID_IDispatch, reinterpret_cast<void**>(package), character), nullptr,
                      L"Faulty package");
            return;
        }
        throw CapeFailure(ECapeInvalidArgumentHR, L"There is no faulty package " + Quoted(name));
    });
}

FaultyManager::FaultyManager(ManagerFault fault)
    : manager(*this, errors, fault),
      utilities(*this, errors, fault == ManagerFault::kInitialize ? FailToInitialize : std::function<void()>(), {})
{}

}  // namespace zelt::sample
