#include "ctl/doctor/doctor.h"

#include <algorithm>
#include <stdexcept>
#include <utility>
#include <vector>

#include "com/failure.h"
#include "system/narrow.h"
#include "system/system_text.h"
#include "ctl/doctor/checks.h"
#include "ctl/doctor/fixing.h"
#include "ctl/exports/session.h"
#include "ctl/exports/stored_packages.h"
#include "ctl/json_writer.h"

namespace zelt::ctl {
namespace {

// clang-format off
constexpr Option kDoctorOptions[] = {
    {"--fix",  nullptr, "fixes what is safe to fix; registering for all users needs an administrator"},
    {"--json", nullptr, "as JSON"},
};

constexpr Command kDoctorCommands[] = {
    {"doctor", "", 0, 0, kDoctorOptions, "Examines the installation and the exported packages",
     "A finding is a word for programs and a sentence: what is wrong, what it causes, how to fix it. It looks at ZELT, and at ZELT64\n"
     "if there is a sign of it:\n"
     "  not-registered, server-file, server, server-quotes, version  the program and the path by which Windows starts it\n"
     "  class, category, application, program-id, description        what is registered of its classes, in both views\n"
     "  log-files                                                    the file class of logs\n"
     "  library, library-file                                        the type libraries, in both views\n"
     "  interface, interface-marshaller, interface-library           each interface of the standard, in both views\n"
     "  package-entry, package-duplicate, package-own                the list of exported packages\n"
     "  package-class, package-file, package-width                   each package's class and its library on disk\n"
     "  package-recording                                            the recording that a package answers from\n"
     "  package-manager, package-name                                each manager, which is started, and its packages\n"
     "  log-folder                                                   whether logs can be written\n"
     "  unit-class, unit-file, unit-width                            the unit operation of PRAVIK\n"
     "--fix registers ZELT again, writes the files of type libraries that ZELT brought, and removes unreadable entries\n"
     "from the list. The exit code is 1 when there are findings, with --fix when some are left.", ExamineInstallation},
};
// clang-format on

// An installation, and what is wrong with it. What both editions share is examined with only one of them.
struct Examined {
    Installation installation;
    Findings findings;

    // Examines what belongs to this edition alone.
    template <class Check>
    void Add(Check&& check)
    {
        const std::size_t before = findings.size();
        check();
        for (std::size_t i = before; i < findings.size(); ++i) findings[i].edition = installation.edition;
    }
};

// ZELT in any case, and ZELT64 if there is any sign of it.
std::vector<const Edition*> ExaminedEditions()
{
    std::vector<const Edition*> editions;
    for (const Edition& edition : Editions()) {
        if (!CanRun(edition)) continue;
        const Installation found = FindInstallation(edition);
        const bool isFirst = editions.empty();
        if (isFirst || found.registered || !found.registrable.empty() || ReadPackages(edition).Count() > 0) {
            editions.push_back(&edition);
        }
    }
    return editions;
}

std::vector<Examined> Examine(const std::vector<const Edition*>& editions)
{
    std::vector<Examined> all;
    for (const Edition* edition : editions) all.push_back({FindInstallation(*edition), {}});
    try {
        bool librariesChecked = false;
        for (Examined& one : all) {
            one.Add([&] { CheckRegistration(one.installation, one.findings); });
            if (one.installation.registered && !std::exchange(librariesChecked, true)) {
                CheckLibraries(one.installation, one.findings);
            }
        }
    } catch (const com::Failure& failure) {
        throw InputError("the registration cannot be examined: " + Utf8(Widen(SystemText(failure.Code()))));
    }
    for (Examined& one : all) one.Add([&] { CheckPackages(*one.installation.edition, one.findings); });
    CheckLogging(all.front().findings);
    return all;
}

Findings AllFindings(const std::vector<Examined>& all)
{
    Findings findings;
    for (const Examined& one : all) findings.insert(findings.end(), one.findings.begin(), one.findings.end());
    return findings;
}

std::string Sentence(const Finding& finding)
{
    return finding.wrong + ", so " + finding.effect + "; " + finding.remedy + '.';
}

bool Contains(const Findings& findings, const Finding& wanted)
{
    return std::any_of(findings.begin(), findings.end(), [&](const Finding& finding) {
        return finding.rule == wanted.rule && finding.wrong == wanted.wrong;
    });
}

bool IsAnyFixable(const Findings& findings)
{
    return std::any_of(findings.begin(), findings.end(),
                       [](const Finding& finding) { return finding.fix != Fix::None; });
}

void WriteJson(const Findings& fixed, const Findings& left, Output& out)
{
    JsonWriter json(out);
    json.BeginArray();
    const auto write = [&](const Findings& findings, bool areFixed) {
        for (const Finding& finding : findings) {
            json.NewLine().BeginObject().Member("rule", finding.rule);
            if (finding.edition) json.Member("edition", Utf8(finding.edition->name));
            json.Member("wrong", finding.wrong);
            json.Member("effect", finding.effect).Member("remedy", finding.remedy);
            json.Key("fixable").Bool(finding.fix != Fix::None).Key("fixed").Bool(areFixed).EndObject();
        }
    };
    write(fixed, true);
    write(left, false);
    json.EndArray();
    out << '\n';
}

void WriteText(const std::vector<Examined>& all, const Findings& fixed, const Findings& left, Output& out)
{
    for (const Finding& finding : fixed) out << "fixed: " << finding.rule << ": " << finding.wrong << ".\n";
    for (const Finding& finding : left) out << finding.rule << ": " << Sentence(finding) << '\n';
    if (!left.empty()) return;
    for (const auto& [installation, findings] : all) {
        out << "healthy: " << Utf8(installation.server) << ' ' << installation.version << ", registered for "
            << (installation.scope == Scope::User ? "the current user" : "all users") << '\n';
    }
}

}  // namespace

std::span<const Command> DoctorCommands() { return kDoctorCommands; }

int ExamineInstallation(const Arguments& arguments, Streams& streams)
{
    const Session session;
    const std::vector<const Edition*> editions = ExaminedEditions();
    std::vector<Examined> all = Examine(editions);
    Findings left = AllFindings(all), fixed;
    // There are two passes, because more can be examined and fixed once ZELT is registered.
    for (int pass = 0; pass < 2 && arguments.Has("--fix") && IsAnyFixable(left); ++pass) {
        for (const Examined& one : all) FixFindings(one.findings, one.installation, streams.messages);
        all = Examine(editions);
        Findings now = AllFindings(all);
        const std::size_t before = fixed.size();
        for (const Finding& finding : left) {
            if (!Contains(now, finding)) fixed.push_back(finding);
        }
        left = std::move(now);
        if (fixed.size() == before) break;
    }
    if (arguments.Has("--json")) {
        WriteJson(fixed, left, streams.data);
    } else {
        WriteText(all, fixed, left, streams.data);
    }
    return left.empty() ? kFine : kFinding;
}

}  // namespace zelt::ctl
