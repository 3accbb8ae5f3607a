// Calls as short texts, for answers that quote them: names, arguments cut to a length that fits a line, and the result. Memory
// depends on how deep calls nest, not on the length of their values.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ctl/log/call_results.h"

namespace zelt::ctl {

struct ArgumentText {
    std::string name;
    bool inward = false;
    int line = 0;
    std::string shown;  // the first values
    long long values = 0, shownValues = 0;

    // "0.5, 0.5", or "1, 2, ... (30 values)"; "(empty)" without values.
    std::string Text() const;
    // Whether it is a pointer to an object, which tells a reader nothing.
    bool IsPointer() const;
};

struct CallText {
    std::string name, object;
    bool inward = false;
    int line = 0, depth = 0;
    CallResult result;
    std::vector<ArgumentText> arguments;

    std::string_view Interface() const;
    std::string_view Method() const;
    const ArgumentText* Find(std::string_view argument) const;
    // The inputs or the outputs as "property = "temperature", basis = """, except pointers and arguments without values.
    std::string List(bool inward) const;
};

// Makes the texts of the calls that are open. `open` holds them, the outermost first, until Close.
class CallTexts {
public:
    void Begin(const LogEvent& event);
    // Call it at the end of the innermost call.
    void Close() { open.pop_back(); }

    std::vector<CallText> open;
};

// "> ICapeThermoPhases::GetPhaseList  Aromatics".
std::string Headline(const CallText& call);

// The text; if it has more bytes than `length`, only its beginning and "...".
std::string Shortened(std::string_view text, std::size_t length);

}  // namespace zelt::ctl
