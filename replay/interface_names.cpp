#include "replay/interface_names.h"

#include <algorithm>
#include <cstring>

#include "com/dual_face.h"
#include "com/type_info.h"
#include "replay/late_calls.h"
#include "system/narrow.h"

namespace zelt::replay {
namespace {

constexpr std::string_view kSeparator = "::";

// Logs name this interface of the 1.0 standard after the 1.1 interface that has the same method.
struct Alias {
    std::string_view logged, described;
};
constexpr Alias kContext10 = {"ICapeThermoMaterialContext(v1.0)", "ICapeThermoContext"};

}  // namespace

InterfaceNames::InterfaceNames()
{
    for (const IID& iid : com::ModuleInterfaces()) Add(iid);
}

void InterfaceNames::Add(std::string_view interfaceId)
{
    IID iid;
    if (interfaceId.size() != sizeof iid) return;
    std::memcpy(&iid, interfaceId.data(), sizeof iid);
    Add(iid);
}

void InterfaceNames::Add(REFIID iid)
{
    const auto described = com::DualInterfaceOf(iid);
    if (!described || described->methods.empty()) return;
    const std::string& first = described->methods.front().name;
    std::string name = first.substr(0, first.find(kSeparator));
    if (name == kContext10.described) name = kContext10.logged;
    interfaces.emplace(std::move(name), described);
}

std::string InterfaceNames::LoggedName(const com::DualMethod& method)
{
    const std::size_t end = method.name.find(kSeparator);
    if (std::string_view(method.name).substr(0, end) != kContext10.described) return method.name;
    return std::string(kContext10.logged) + method.name.substr(end);
}

HRESULT NamedMethod::Call(IUnknown* object, const void* words) const
{
    if (IsLate(Method().name)) return CallLate(*static_cast<IDispatch*>(object), Method(), words);
    return com::CallDual(object, number, words, Method().words);
}

NamedMethod InterfaceNames::Find(const recording::KeptCall& call, const recording::KeptQueries& queries)
{
    if (IsLate(call.call.member)) return {LateInterface(call)};
    if (const NamedMethod known = Find(call.call.member)) return known;
    for (const std::uint64_t pointer : {call.object.pointer, call.object.proxy}) {
        for (const std::string& interfaceId : queries.Granted(pointer)) Add(interfaceId);
    }
    return Find(call.call.member);
}

bool InterfaceNames::IsOf(const recording::KeptCall& call, const com::DualMethod& method,
                          const recording::KeptQueries& queries)
{
    if (IsLate(method.name)) return com::IsSameMemberName(Widen(call.call.member), Widen(method.name));
    const NamedMethod known = Find(call, queries);
    return known && &known.Method() == &method;
}

NamedMethod InterfaceNames::Find(std::string_view member) const
{
    const std::size_t end = member.find(kSeparator);
    const auto found = end == std::string_view::npos ? interfaces.end() : interfaces.find(member.substr(0, end));
    if (found == interfaces.end()) return {};
    const std::string_view wanted = member.substr(end);
    const std::vector<com::DualMethod>& methods = found->second->methods;
    const auto method = std::find_if(methods.begin(), methods.end(),
                                     [&](const com::DualMethod& one) { return one.name.ends_with(wanted); });
    if (method == methods.end()) return {};
    return {found->second, static_cast<std::size_t>(method - methods.begin())};
}

}  // namespace zelt::replay
