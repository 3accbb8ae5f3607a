// The interfaces that the system and the runtimes ask any object for, on their own account: to marshal it, to find out what it
// is, or to report an error. As a rule, neither a simulator nor a package asks for them, and objects refuse them, so such a
// query says nothing about either. Interfaces that a program asks for on its own account, such as those for saving, are not
// here.
#pragma once

#include <string_view>

namespace zelt {

struct SystemInterface {
    std::string_view name;
    std::string_view identifier;
    std::string_view reason;  // who asks, and what for
};

// clang-format off
inline constexpr SystemInterface kSystemInterfaces[] = {
    {"IMarshal",             "{00000003-0000-0000-C000-000000000046}", "COM's marshaller: does the object marshal itself?"},
    {"IMarshal2",            "{000001CF-0000-0000-C000-000000000046}", "COM's marshaller: the same, for a newer interface"},
    {"IMarshalOptions",      "{4C1E39E1-E3E3-4296-AA86-EC938D896E92}", "COM's marshaller: with which options?"},
    {"INoMarshal",           "{ECC8691B-C1DB-4DC0-855E-65F6C551AF49}", "COM's marshaller: must the object stay in its apartment?"},
    {"IAgileObject",         "{94EA2B94-E9CC-49E0-C0FF-EE64CA8F5B90}", "COM's marshaller and .NET: may any thread call the object?"},
    {"IFastRundown",         "{00000040-0000-0000-C000-000000000046}", "COM's marshaller: may it forget clients early?"},
    {"IStdMarshalInfo",      "{00000018-0000-0000-C000-000000000046}", "COM's marshaller: is there a handler in the client?"},
    {"IExternalConnection",  "{00000019-0000-0000-C000-000000000046}", "COM's marshaller: does the object count its clients?"},
    {"IdentityUnmarshal",    "{0000001B-0000-0000-C000-000000000046}", "COM's marshaller: is the object a proxy of its own?"},
    {"IProxyManager",        "{00000008-0000-0000-C000-000000000046}", "COM's marshaller: the same, by an older interface"},
    {"",                     "{334D391F-0E79-3B15-C9FF-EAC65DD07C42}", "COM's marshaller since Windows 8; not documented"},
    {"",                     "{77DD1250-139C-2BC3-BD95-900ACED61BE5}", "COM's marshaller since Windows 8; not documented"},
    {"",                     "{BFD60505-5A1F-4E41-88BA-A6FB07202DA9}", "COM's marshaller since Windows 8; not documented"},
    {"",                     "{9BC79C93-2289-4BB5-ABF4-3287FD9CAE39}", "COM's marshaller since Windows 8; not documented"},
    {"",                     "{03FB5C57-D534-45F5-A1F4-D39556983875}", "COM's marshaller since Windows 8; not documented"},
    {"IRemUnknownTestHook",  "{2C258AE7-50DC-49FF-9D1D-2ECB9A52CDD7}", "COM's marshaller since Windows 8; not documented"},
    {"IMultiQI",             "{00000020-0000-0000-C000-000000000046}", "COM's activation: can it ask for several interfaces at once?"},
    {"IClientSecurity",      "{0000013D-0000-0000-C000-000000000046}", "COM's security: is the object a proxy with settings of its own?"},
    {"IRpcOptions",          "{00000144-0000-0000-C000-000000000046}", "COM's remote calls: the same, for time-outs"},
    {"ICallFactory",         "{1C733A30-2A1C-11CE-ADE5-00AA0044773D}", "COM's remote calls: are there asynchronous ones?"},
    {"IManagedObject",       "{C3FCC19E-A970-11D2-8B5A-00A0C9B7C9C4}", ".NET: is the object managed, so that no wrapper is needed?"},
    {"IReferenceTracker",    "{11D3B13A-180E-4789-A8BE-7712882893E6}", ".NET: does the object take part in garbage collection?"},
    {"IWeakReferenceSource", "{00000038-0000-0000-C000-000000000046}", ".NET: are there weak references to the object?"},
    {"IInspectable",         "{AF86E2E0-B12D-4C6A-9C5A-D7AA65101E90}", ".NET: is it an object of the Windows Runtime?"},
    {"IProvideClassInfo",    "{B196B283-BAB4-101A-B69C-00AA00341D07}", ".NET and script hosts: which class is it?"},
    {"IProvideClassInfo2",   "{A6BC3AC0-DBAA-11CE-9DE3-00AA004BB851}", "script hosts: which events does it have?"},
    {"IDispatchEx",          "{A6EF9860-C720-11D0-9337-00A0C90DCAA9}", "script hosts: can members be added?"},
    {"IObjectSafety",        "{CB5BDC81-93C1-11CF-8F20-00805F2CD064}", "script hosts: may untrusted scripts use the object?"},
    {"IObjectWithSite",      "{FC4801A3-2BA9-11CF-A229-00AA003D7352}", "script hosts: does the object want to know its host?"},
    {"ISupportErrorInfo",    "{DF0B3D60-548F-101B-8E65-08002B2BD119}", "runtimes, after a failure: is the error information the object's?"},
};
// clang-format on

// Whether the interface is one of these. A log gives its name or, in braces, its identifier.
constexpr bool IsSystemInterface(std::string_view interfaceInLog)
{
    if (interfaceInLog.empty()) return false;
    for (const SystemInterface& row : kSystemInterfaces) {
        if (interfaceInLog == (interfaceInLog.front() == '{' ? row.identifier : row.name)) return true;
    }
    return false;
}

}  // namespace zelt
