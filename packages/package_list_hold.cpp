#include "packages/package_list_hold.h"

#include <aclapi.h>
#include <sddl.h>

#include <string>
#include <vector>

#include "system/elevation.h"

namespace zelt {
namespace {

// Milliseconds. An edit needs far less: it only reads and writes a few registry values.
constexpr DWORD kPatience = 5000;

std::wstring SignOf(const Edition& edition) { return edition.name + std::wstring(L" holds the package list of "); }
std::wstring EditOf(const Edition& edition) { return edition.name + std::wstring(L" package list edit of "); }

// The second sign of a hold, which also tells its rights. Other versions look only for the first.
std::wstring SignOf(const Edition& edition, Rights rights)
{
    const wchar_t* whose = rights == Rights::Administrator ? L"administrator's " : L"plain ";
    return edition.name + std::wstring(L" holds the package list with ") + whose + L"rights of ";
}

// The current user's identifier as text; empty when it is not available.
std::wstring UserText()
{
    HANDLE raw = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &raw)) return {};
    const UniqueHandle token(raw);
    DWORD size = 0;
    GetTokenInformation(token.get(), TokenUser, nullptr, 0, &size);
    std::vector<BYTE> user(size);
    wchar_t* text = nullptr;
    if (!GetTokenInformation(token.get(), TokenUser, user.data(), size, &size) ||
        !ConvertSidToStringSidW(reinterpret_cast<const TOKEN_USER*>(user.data())->User.Sid, &text)) {
        return {};
    }
    return UniqueLocal<wchar_t>(text).get();
}

// The list belongs to a user, so the mutex's name contains the user's identifier. Each process of the user can open the mutex,
// with or without administrator's rights; by default, that would depend on the rights of the process that made it first.
UniqueHandle MakeMutex(const std::wstring& name)
{
    const std::wstring user = UserText();
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    ConvertStringSecurityDescriptorToSecurityDescriptorW((L"D:(A;;GA;;;SY)(A;;GA;;;" + user + L")").c_str(),
                                                         SDDL_REVISION_1, &descriptor, nullptr);
    const UniqueLocal<void> owner(descriptor);
    SECURITY_ATTRIBUTES attributes = {sizeof attributes, descriptor, FALSE};
    return UniqueHandle(CreateMutexW(descriptor ? &attributes : nullptr, FALSE, (L"Global\\" + (name + user)).c_str()));
}

bool Exists(const std::wstring& signName)
{
    const std::wstring name = L"Global\\" + (signName + UserText());
    const UniqueHandle sign(OpenMutexW(SYNCHRONIZE, FALSE, name.c_str()));
    // A sign that exists but may not be opened counts, too.
    return sign || GetLastError() != ERROR_FILE_NOT_FOUND;
}

// Waits for the mutex, up to kPatience, and takes it. The mutex of a process that has died can be taken, too: that process
// writes nothing more.
bool Own(HANDLE mutex)
{
    const DWORD answer = mutex ? WaitForSingleObject(mutex, kPatience) : WAIT_FAILED;
    return answer == WAIT_OBJECT_0 || answer == WAIT_ABANDONED;
}

}  // namespace

Rights RightsOfThisProcess() { return IsElevated() ? Rights::Administrator : Rights::Plain; }

PackageListHold::PackageListHold(Rights rights) : rights(rights)
{
    // Make the signs before the wait: an edit that begins now sees the first.
    sign = MakeMutex(SignOf(kThisEdition));
    signOfRights = MakeMutex(SignOf(kThisEdition, rights));
    const UniqueHandle mutex = MakeMutex(EditOf(kThisEdition));
    if (Own(mutex.get())) ReleaseMutex(mutex.get());
}

bool PackageListHold::IsShared() const
{
    const Rights others = rights == Rights::Plain ? Rights::Administrator : Rights::Plain;
    return Exists(SignOf(kThisEdition, others));
}

PackageListEdit::PackageListEdit(const Edition& edition) : mutex(MakeMutex(EditOf(edition)))
{
    owned = Own(mutex.get());
    allowed = owned && !Exists(SignOf(edition));
}

PackageListEdit::~PackageListEdit()
{
    if (owned) ReleaseMutex(mutex.get());
}

}  // namespace zelt
