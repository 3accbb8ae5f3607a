#include "log/recording/recorded_component.h"

#include <map>

#include "com/failure.h"
#include "com/type_info.h"
#include "guard/foreign_call.h"
#include "log/recording/call_recorder.h"
#include "log/log_document.h"
#include "recording/text_form.h"
#include "system/file_hash.h"
#include "system/version.h"

namespace zelt {

static_assert(kRecordedUnit == recording::kUnitOperation);

namespace {

std::string Utf8(std::wstring_view text)
{
    std::string form;
    recording::AppendUtf8(form, {reinterpret_cast<const char16_t*>(text.data()), text.size()});
    return form;
}

// The path of the module with the object's methods; empty when the object's first words do not lead to one.
std::wstring LibraryOf(IUnknown* object)
{
    const void* method = nullptr;
    static_cast<void>(CallForeign([&] {
        method = **reinterpret_cast<const void* const* const*>(object);
        return S_OK;
    }));
    HMODULE module = nullptr;
    constexpr DWORD kFlags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (!method || !GetModuleHandleExW(kFlags, static_cast<const wchar_t*>(method), &module)) return {};
    return com::ModulePath(module);
}

// What identifies a library.
struct LibraryFacts {
    WIN32_FILE_ATTRIBUTE_DATA file;  // as it was when the rest was read
    std::string version, hash;
};

// Reading a whole library takes time, and a simulator may make hundreds of components from one, so it is read again only when its
// size or date has changed. Only the apartment that owns the proxies calls this function.
const LibraryFacts& FactsOf(const std::wstring& path)
{
    static auto& known = *new std::map<std::wstring, LibraryFacts>;
    WIN32_FILE_ATTRIBUTE_DATA file = {};
    GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &file);
    const auto found = known.find(path);
    const bool isSame = found != known.end() && found->second.file.nFileSizeLow == file.nFileSizeLow &&
                        found->second.file.nFileSizeHigh == file.nFileSizeHigh &&
                        CompareFileTime(&found->second.file.ftLastWriteTime, &file.ftLastWriteTime) == 0;
    if (isSame) return found->second;
    return known.insert_or_assign(path, LibraryFacts{file, FileVersionText(path), Sha256OfFile(path)}).first->second;
}

}  // namespace

void RecordComponent(LogDocument* document, const RecordedComponent& component, IUnknown* object) noexcept
{
    CallRecorder* const recorder = document ? document->Recorder() : nullptr;
    if (!recorder) return;
    com::Attempt([&] {
        const std::wstring library = object ? LibraryOf(object) : std::wstring();
        const std::string name = Utf8(component.name), exportedName = Utf8(component.exportedName),
                          libraryName = Utf8(library);
        const LibraryFacts facts = library.empty() ? LibraryFacts() : FactsOf(library);
        recording::Component recorded;
        recorded.classId = {reinterpret_cast<const char*>(&component.classId), sizeof component.classId};
        recorded.kind = component.kind;
        recorded.name = name;
        recorded.exportedName = exportedName;
        recorded.pointer = reinterpret_cast<std::uintptr_t>(object);
        recorded.library = libraryName;
        recorded.libraryVersion = facts.version;
        recorded.libraryHash = facts.hash;
        recorder->Say(recorded);
    });
}

}  // namespace zelt
