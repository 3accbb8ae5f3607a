#include "registration/library_facts.h"

#include <objbase.h>
#include <oleauto.h>
#include <comutil.h>
#include <wrl/client.h>

#include <cwchar>
#include <memory>

#include "com/failure.h"
#include "system/guid_text.h"

namespace zelt {
namespace {

using Microsoft::WRL::ComPtr;

// True for dual interfaces, which a library lists as dispatch interfaces, and for interfaces that are marked as compatible with
// Automation.
bool IsMarshalledByLibrary(const TYPEATTR& attributes)
{
    if (attributes.typekind == TKIND_DISPATCH) return attributes.wTypeFlags & TYPEFLAG_FDUAL;
    return attributes.typekind == TKIND_INTERFACE && attributes.wTypeFlags & TYPEFLAG_FOLEAUTOMATION;
}

std::wstring DocumentedText(ITypeLib& library, int index, bool description)
{
    _bstr_t text;
    com::Check(library.GetDocumentation(index, description ? nullptr : text.GetAddress(),
                                        description ? text.GetAddress() : nullptr, nullptr, nullptr));
    return text.length() ? std::wstring(text, text.length()) : std::wstring();
}

}  // namespace

LibraryFacts ReadLibraryFacts(ITypeLib& library)
{
    LibraryFacts facts = {};
    const auto releaseLibrary = [&library](TLIBATTR* attributes) { library.ReleaseTLibAttr(attributes); };
    TLIBATTR* raw = nullptr;
    com::Check(library.GetLibAttr(&raw));
    const std::unique_ptr<TLIBATTR, decltype(releaseLibrary)> attributes(raw, releaseLibrary);
    facts.libid = attributes->guid;
    facts.major = attributes->wMajorVerNum;
    facts.minor = attributes->wMinorVerNum;
    facts.lcid = attributes->lcid;
    facts.kind = attributes->syskind;
    facts.description = DocumentedText(library, -1, true);
    wchar_t version[32];
    std::swprintf(version, std::size(version), L"%x.%x", facts.major, facts.minor);
    facts.version = version;
    facts.versionPath = L"TypeLib\\" + GuidText(facts.libid) + L'\\' + facts.version;

    for (UINT index = 0; index < library.GetTypeInfoCount(); ++index) {
        ComPtr<ITypeInfo> info;
        com::Check(library.GetTypeInfo(index, &info));
        const auto releaseType = [&info](TYPEATTR* attributes) { info->ReleaseTypeAttr(attributes); };
        TYPEATTR* rawType = nullptr;
        com::Check(info->GetTypeAttr(&rawType));
        const std::unique_ptr<TYPEATTR, decltype(releaseType)> type(rawType, releaseType);
        if (!IsMarshalledByLibrary(*type)) continue;
        facts.interfaces.push_back({type->guid, DocumentedText(library, static_cast<int>(index), false)});
    }
    return facts;
}

}  // namespace zelt
