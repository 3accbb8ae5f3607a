#include "registration/shared_file.h"

#include <objbase.h>
#include <shlobj.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string_view>

#include "com/failure.h"
#include "com/type_info.h"
#include "system/known_folder.h"

namespace zelt {
namespace {

std::filesystem::path SharedFolder(Scope scope)
{
    std::wstring folder;
    com::Check(KnownFolder(scope == Scope::User ? FOLDERID_LocalAppData : FOLDERID_ProgramFilesCommonX86,
                           KF_FLAG_CREATE, folder));
    return std::filesystem::path(folder) / L"CAPE-OPEN";
}

std::string_view LibraryBytes(int number)
{
    const HMODULE module = com::ThisModule();
    const HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(number), L"TYPELIB");
    if (!resource) throw com::Failure(HRESULT_FROM_WIN32(GetLastError()));
    return {static_cast<const char*>(LockResource(LoadResource(module, resource))), SizeofResource(module, resource)};
}

bool Holds(const std::filesystem::path& path, std::string_view bytes)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) return false;
    const std::string content{std::istreambuf_iterator<char>(file), {}};
    return content == bytes;
}

}  // namespace

std::wstring SharedFilePath(Scope scope, const std::wstring& fileName)
{
    return (SharedFolder(scope) / fileName).wstring();
}

std::wstring WriteSharedFile(Scope scope, int number, const std::wstring& fileName)
{
    const std::filesystem::path folder = SharedFolder(scope);
    const std::filesystem::path path = folder / fileName;
    const std::string_view bytes = LibraryBytes(number);
    if (Holds(path, bytes)) return path.wstring();
    std::error_code ignored;  // If the folder cannot be made, opening the file fails.
    std::filesystem::create_directories(folder, ignored);
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) throw com::Failure(STG_E_CANTSAVE);
    return path.wstring();
}

}  // namespace zelt
