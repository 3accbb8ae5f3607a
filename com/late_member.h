// Members that no interface of an object has: only the object's IDispatch knows them. Logs and recordings name a use of such a
// member "IDispatch::get_Colour" when it reads a property, "IDispatch::put_Colour" or "IDispatch::putref_Colour" when it sets
// one, and "IDispatch::Colour" otherwise.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <string>
#include <string_view>
#include <vector>

namespace com {

struct LateMember {
    std::wstring name;
    DISPID standard = DISPID_UNKNOWN;  // its identifier, when that is the same for every object
};

// Whether Automation itself defines the identifier, which then means the same for every object.
inline bool IsStandardMember(DISPID id) { return id <= DISPID_VALUE && id != DISPID_UNKNOWN; }
LateMember StandardMember(DISPID id);

// The name of a use; `flags` are those of Invoke.
std::wstring NameOfUse(const LateMember& member, WORD flags);

struct LateUse {
    LateMember member;
    WORD flags;
};
// The uses that may have this name, the likeliest first: a method's own name may begin with "get_". Empty for other names.
std::vector<LateUse> UsesOf(std::wstring_view name);

// Whether two names of members are the same for Automation, which ignores the case of letters.
bool IsSameMemberName(std::wstring_view one, std::wstring_view other);

}  // namespace com
