// Checks the registration against the scripts that make it.
#include <set>
#include <utility>

#include "ctl/doctor/checks.h"
#include "ctl/exports/session.h"
#include "res/resource.h"
#include "registration/registrar.h"
#include "system/version.h"

namespace zelt::ctl {
namespace {

// What a missing or different entry means. `place` is the beginning of the entry's path: in kClassMeanings below the key of the
// class, in kOtherMeanings below the root of all classes.
struct Meaning {
    const wchar_t* place;
    const char* rule;
    const char* effect;
};

// clang-format off
// The first matching row counts.
constexpr Meaning kClassMeanings[] = {
    {L"LocalServer32",                     "server",      "Windows cannot start ZELT for it, or starts another program"},
    {L"Implemented Categories",            "category",    "simulators do not list it"},
    {L"AppID",                             "application", "Windows does not know that it belongs to ZELT"},
    {L"ProgID",                            "program-id",  "programs that remember it by name do not find it"},
    {L"VersionIndependentProgID",          "program-id",  "programs that remember it by name do not find it"},
    {L"CapeDescription\\ComponentVersion", "version",     "simulators show the version of another ZELT"},
    {L"CapeDescription",                   "description", "simulators show it wrongly, or not at all"},
    {L"",                                  "class",       "programs that rely on a complete registration do not find it"},
};
constexpr Meaning kOtherMeanings[] = {
    {L"AppID",        "application", "Windows does not know ZELT as one application"},
    {L".zlg",         "log-files",   "Explorer does not open logs with it"},
    {L"ZELT.logFile", "log-files",   "Explorer does not open logs with it"},
    {L"",             "program-id",  "programs that ask for a class by name do not find it"},
};
// clang-format on

template <std::size_t Rows>
const Meaning& MeaningOf(const Meaning (&rows)[Rows], const std::wstring& place)
{
    for (const Meaning& row : rows) {
        if (place.starts_with(row.place)) return row;
    }
    return rows[Rows - 1];
}

// The entry's place below `root`: keys and the value's name.
std::wstring PlaceBelow(const std::wstring& root, const ScriptEntry& entry)
{
    std::wstring place = entry.key.size() > root.size() ? entry.key.substr(root.size() + !root.empty()) : L"";
    if (entry.value && !entry.value->empty()) place += (place.empty() ? L"" : L"\\") + *entry.value;
    return place;
}

std::string Difference(const std::string& owner, const std::wstring& place, const RegistrationFault& fault)
{
    const std::string what = place.empty() ? "description" : Utf8(place);
    if (!fault.found.text || !fault.expected.value) return owner + " lacks its entry " + what;
    return owner + " has the " + what + " \"" + Utf8(*fault.found.text) + "\" instead of \"" +
           Utf8(fault.expected.text) + '"';
}

const char* Simulators(REGSAM view)
{
    return view == KEY_WOW64_32KEY ? "32-bit simulators" : view == KEY_WOW64_64KEY ? "64-bit simulators" : "simulators";
}

bool LacksQuotes(const RegistrationFault& fault)
{
    return fault.found.text && Quoted(*fault.found.text) == fault.expected.text;
}

void CheckClass(const Installation& installation, const EditionClass& own, Findings& findings)
{
    const std::wstring root = ClassPath(own.classId);
    const std::string owner = "The class " + Utf8(own.progId);
    std::set<std::pair<std::string, REGSAM>> told;
    std::set<REGSAM> missing;
    for (const RegistrationFault& fault : FindRegistrationFaults(
             *installation.edition, own.script, installation.ServerOrOwn(), installation.version, LookUpEffective)) {
        const bool inClass = fault.expected.key.starts_with(root);
        const REGSAM view = inClass ? fault.view : 0;
        if (inClass && !LookUpEffective(view, root, L"").keyExists) {
            if (!missing.insert(view).second) continue;
            findings.push_back({"class", owner + " is not registered" + InView(view),
                                std::string(Simulators(view)) + " do not find it", RegisterAgain(installation),
                                Fix::Register});
            continue;
        }
        const std::wstring place = PlaceBelow(inClass ? root : L"", fault.expected);
        const Meaning& meaning = inClass ? MeaningOf(kClassMeanings, place) : MeaningOf(kOtherMeanings, place);
        if (!told.insert({meaning.rule, view}).second) continue;
        if (inClass && place == L"LocalServer32" && LacksQuotes(fault)) {
            findings.push_back(
                {"server-quotes",
                 owner + " names the path \"" + Utf8(*fault.found.text) + "\" without quotes" + InView(view),
                 "a program whose name is the beginning of the path could be started in its place",
                 RegisterAgain(installation), Fix::Register});
            continue;
        }
        findings.push_back({meaning.rule, Difference(owner, place, fault) + InView(view), meaning.effect,
                            RegisterAgain(installation), Fix::Register});
    }
}

void CheckApplication(const Installation& installation, Findings& findings)
{
    std::set<std::string> told;
    for (const RegistrationFault& fault :
         FindRegistrationFaults(*installation.edition, installation.edition->applicationScript,
                                installation.ServerOrOwn(), installation.version, LookUpEffective)) {
        const std::wstring place = PlaceBelow({}, fault.expected);
        const Meaning& meaning = MeaningOf(kOtherMeanings, place);
        if (!told.insert(meaning.rule).second) continue;
        findings.push_back({meaning.rule, Difference("The registration", place, fault), meaning.effect,
                            RegisterAgain(installation), Fix::Register});
    }
}

}  // namespace

void CheckRegistration(const Installation& installation, Findings& findings)
{
    const bool fixable = !installation.registrable.empty();
    const std::string remedy = fixable ? RegisterAgain(installation) : InstallAgain(installation);
    const Fix fix = fixable ? Fix::Register : Fix::None;
    if (!installation.registered) {
        findings.push_back(
            {"not-registered", NameOf(installation) + " is not registered", "no simulator finds it", remedy, fix});
        return;
    }
    if (!installation.server.empty() && installation.server != installation.registrable) {
        findings.push_back({"server-file", "The registered program \"" + Utf8(installation.server) + "\" is not there",
                            "no simulator can start it", remedy, fix});
    }
    if (fixable && installation.version != OwnVersion()) {
        findings.push_back({"version",
                            Utf8(Quoted(installation.registrable)) + " is of version " + installation.version +
                                ", and zeltctl of version " + OwnVersion(),
                            "they may not agree on what is right", "install both from one setup program"});
    }
    const std::size_t first = findings.size();
    for (const EditionClass& own : installation.edition->classes) CheckClass(installation, own, findings);
    CheckApplication(installation, findings);
    if (fixable) return;
    for (std::size_t index = first; index < findings.size(); ++index) {
        findings[index].remedy = remedy;
        findings[index].fix = fix;
    }
}

}  // namespace zelt::ctl
