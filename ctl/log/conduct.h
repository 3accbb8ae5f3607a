// The rules of CAPE-OPEN conduct that a log can show to be broken. Objects are distinguished by their names in the log; when in
// doubt, nothing is reported. What the simulator does to its own materials is in no log, so a property counts as unset only
// when the log shows the whole life of the material, or that it was cleared.
#pragma once

#include <map>
#include <set>
#include <string>

#include "ctl/log/call_summary.h"
#include "ctl/log/findings.h"

namespace zelt::ctl {

// Rules for Initialize and Terminate.
class LifeRules {
public:
    explicit LifeRules(const ReportFinding& report) : report(report) {}
    void Begin(const LogEvent& call);
    void End(const CallSummary& call);
    // Call it at the end of a log that is complete.
    void Finish();

private:
    struct Life {
        int used = 0;         // the line of the first call that needs an initialised object
        int initialized = 0;  // the line of the latest Initialize that succeeded; 0 for none
        int terminated = 0;   // the line of the latest Terminate since then that succeeded; 0 for none
        bool tried = false;   // Terminate has been called since then and has failed
    };
    const ReportFinding& report;
    std::map<std::string, Life, std::less<>> lives;
};

// Rules for values: fractions, and numbers that are not finite.
class ValueRules {
public:
    explicit ValueRules(const ReportFinding& report) : report(report) {}
    void End(const CallSummary& call);

private:
    const ReportFinding& report;
};

// Finds properties that are read before they were set.
class PropertyRules {
public:
    explicit PropertyRules(const ReportFinding& report) : report(report) {}
    void Begin(const LogEvent& call);
    void End(const CallSummary& call, bool outermost);

private:
    struct Material {
        std::set<std::string> properties;  // property and phase, in lower case
        const char* since;                 // why it had no properties: it was "created" or "cleared"
        bool created;                      // by the package itself, so that the simulator does not touch it
    };
    void Check(const Material& material, const CallSummary& call, std::string_view property, std::string_view phase);

    const ReportFinding& report;
    std::map<std::string, Material, std::less<>> materials;
    std::set<std::string, std::less<>> names;  // of the simulator's objects that have been called or created
};

// Finds a package that is used both as 1.0 and as 1.1.
class VersionRules {
public:
    explicit VersionRules(const ReportFinding& report) : report(report) {}
    void Begin(const LogEvent& call);

private:
    struct Uses {
        int line10 = 0, line11 = 0;
    };
    const ReportFinding& report;
    std::map<std::string, Uses, std::less<>> uses;
};

}  // namespace zelt::ctl
