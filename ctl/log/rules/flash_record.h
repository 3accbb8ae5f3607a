// What a package reads from materials and sets in them during one equilibrium calculation: the feed, the phases, their states
// and shares. Rules judge by it, and redaction needs it to keep the balance. A material whose values are not certain is marked.
// On request, it also records two other calculations: that of a phase's properties, with the state for which the package
// calculates and the fugacities, and that of a unit operation, with the flows of the materials that it reads and sets.
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ctl/log/log_events.h"

namespace zelt::ctl {

class FlashRecord {
public:
    struct Composition {
        std::vector<double> fractions;  // or other values, one for each compound; empty while unknown
        std::string basis;
        int line = 0;
    };
    struct Phase {
        std::string label;           // as the log has it
        int declared = 0;            // the line of the call that says that the phase is present
        bool atEquilibrium = false;  // that call also says that it is at equilibrium
        bool isGiven = false;        // any of its properties is set
        Composition composition;
        std::optional<double> share;  // its phase fraction
        std::string shareBasis;
        std::optional<double> temperature, pressure;
        Composition fugacity;
    };
    struct Material {
        std::string name;
        Composition feed;
        std::vector<Phase> phases;
        bool declares = false;  // the package says which phases are present
        bool isUnsure = false;  // for example, others may have changed it, or two materials may have this name
        // For the calculation of a unit operation; in others, `compounds` stays empty.
        std::vector<std::string> compounds;
        std::optional<double> totalFlow;
        std::string totalFlowBasis;
        Composition flows;      // of the compounds
        bool isOutlet = false;  // its overall fractions or flows are set

        const Phase* Find(std::string_view label) const;
    };

    enum class Of { Equilibrium, Properties, Unit };

    FlashRecord(bool alsoOfProperties, bool alsoOfUnits) : alsoOfProperties(alsoOfProperties), alsoOfUnits(alsoOfUnits)
    {}

    // Call it for each event, in order.
    void Begin(const LogEvent& event)
    {
        if (depth >= 0 || event.kind == EventKind::Call) Take(event);
    }
    // Call it at the end of each call. True for the end of a calculation, whose record is then complete.
    bool EndCall(int depth);
    static constexpr int kMostEvents = 20'000;

    bool IsOpen() const { return depth >= 0 && !isTooLong; }
    // Of the latest calculation.
    Of Kind() const { return kind; }
    // The calculation has more than kMostEvents events. If so, it is not known whether it failed.
    bool IsTooLong() const { return isTooLong; }
    int Line() const { return line; }
    bool HasFailed() const { return failed; }
    const std::vector<Material>& Materials() const { return materials; }
    const Material* Find(std::string_view material) const;

private:
    enum class Part {
        None,
        Property,
        Phase,
        Basis,
        Compounds,
        Numbers,
        Temperature,
        Pressure,
        Labels,
        Statuses,
        Created
    };
    // A call that the package makes.
    struct Inner {
        std::string method, object, property, phase, basis, created;
        std::vector<std::string> labels, statuses;
        std::vector<double> numbers;
        std::optional<double> temperature, pressure;
        int line = 0;
        bool isOpen = false, isMaterial = false, isForeign = false, ofSome = false, areNumbers = true, failed = false;
        Part part = Part::None;

        void Clear();  // the memory is reused
    };

    void Take(const LogEvent& event);
    static Part PartOf(std::string_view argument);
    void TakeValue(std::string_view text);
    void Interpret();
    void TakeProperty(Material& material, bool sets);
    void TakeState(Material& material);
    void TakePresentPhases(Material& material);
    Material& MaterialOf(const std::string& name);
    static Phase& PhaseOf(Material& material, const std::string& label);

    const bool alsoOfProperties, alsoOfUnits;
    Of kind = Of::Equilibrium;
    int events = 0;
    bool isTooLong = false;
    int depth = -1;  // of the open calculation
    int line = 0;
    bool failed = false;
    std::vector<Material> materials;
    Material surplus;  // takes the values of a material for which there is no room
    Inner inner;
};

}  // namespace zelt::ctl
