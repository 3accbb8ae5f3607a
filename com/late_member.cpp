#include "com/late_member.h"

#include <algorithm>
#include <cwchar>

namespace com {
namespace {

constexpr std::wstring_view kInterface = L"IDispatch::";

struct Prefix {
    WORD flag;
    std::wstring_view text;
};
constexpr Prefix kPrefixes[] = {
    {DISPATCH_PROPERTYGET, L"get_"},
    {DISPATCH_PROPERTYPUT, L"put_"},
    {DISPATCH_PROPERTYPUTREF, L"putref_"},
};

struct StandardName {
    DISPID id;
    std::wstring_view text;
};
constexpr StandardName kStandardNames[] = {{DISPID_VALUE, L"DISPID_VALUE"}, {DISPID_NEWENUM, L"DISPID_NEWENUM"}};
constexpr std::wstring_view kNumber = L"[DISPID=";

LateMember MemberWithName(std::wstring_view name)
{
    LateMember member = {std::wstring(name)};
    for (const StandardName& known : kStandardNames) {
        if (known.text == name) member.standard = known.id;
    }
    if (name.starts_with(kNumber)) member.standard = std::wcstol(member.name.c_str() + kNumber.size(), nullptr, 10);
    return member;
}

// A property that is read as if it were a method has no prefix.
std::wstring_view PrefixOf(WORD flags)
{
    if (flags == DISPATCH_PROPERTYGET) return kPrefixes[0].text;
    if (flags & DISPATCH_PROPERTYPUTREF) return kPrefixes[2].text;
    if (flags & DISPATCH_PROPERTYPUT) return kPrefixes[1].text;
    return {};
}

}  // namespace

LateMember StandardMember(DISPID id)
{
    for (const StandardName& known : kStandardNames) {
        if (known.id == id) return {std::wstring(known.text), id};
    }
    return {std::wstring(kNumber) + std::to_wstring(id) + L"]", id};
}

std::wstring NameOfUse(const LateMember& member, WORD flags)
{
    return std::wstring(kInterface).append(PrefixOf(flags)).append(member.name);
}

std::vector<LateUse> UsesOf(std::wstring_view name)
{
    std::vector<LateUse> uses;
    if (!name.starts_with(kInterface)) return uses;
    name.remove_prefix(kInterface.size());
    for (const Prefix& prefix : kPrefixes) {
        if (!name.starts_with(prefix.text)) continue;
        uses.push_back({MemberWithName(name.substr(prefix.text.size())), prefix.flag});
    }
    uses.push_back({MemberWithName(name), DISPATCH_METHOD | DISPATCH_PROPERTYGET});
    return uses;
}

bool IsSameMemberName(std::wstring_view one, std::wstring_view other)
{
    return CompareStringOrdinal(one.data(), static_cast<int>(one.size()), other.data(), static_cast<int>(other.size()),
                                TRUE) == CSTR_EQUAL;
}

}  // namespace com
