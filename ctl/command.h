// The commands are rows of tables: a name, what the command takes and what it does. Run finds the row for a command line,
// checks the words against it and calls its function. Help is made from the same rows.
#pragma once

#include <map>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "ctl/output.h"

namespace zelt::ctl {

enum ExitCode : int {
    kFine = 0,
    kFinding = 1,     // a difference, a finding, or a log or recording that is cut off; the command worked
    kUsage = 2,       // the command line is not understood, or asks for something that cannot be done now
    kUnreadable = 3,  // the input cannot be read, the output cannot be written, or the program failed
};

// The command line is wrong: it has an unknown command or an unsuitable value, for example. The text is for the user.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The command line is understood, but what it asks for cannot be done now. The text is for the user.
struct Refusal : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// What the command works on, a file or a part of the registry, cannot be read or changed.
struct InputError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The file for the output cannot be created.
struct OutputError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Option {
    const char* name;   // with its dashes
    const char* value;  // its value, as the help names it: "FILE", or a choice such as "in|out"; null for a flag
    const char* what;
};

// What follows the command's name, checked against its row.
class Arguments {
public:
    Arguments(std::vector<std::string> operands, std::map<std::string, std::string, std::less<>> options)
        : operands(std::move(operands)), options(std::move(options))
    {}

    const std::string& Operand(std::size_t index) const { return operands.at(index); }
    std::size_t Operands() const { return operands.size(); }
    bool Has(std::string_view option) const { return options.find(option) != options.end(); }
    std::optional<std::string> Value(std::string_view option) const;
    // The option's value as a number, 0 or more; nothing when the option is not given. Throws UsageError for any other value.
    std::optional<double> Number(std::string_view option) const;
    // The option's value as a whole number from `least` to a million; nothing when the option is not given. Throws UsageError
    // for any other value.
    std::optional<std::size_t> Count(std::string_view option, int least) const;

private:
    std::vector<std::string> operands;
    std::map<std::string, std::string, std::less<>> options;
};

struct Command {
    const char* name;      // one word or two
    const char* operands;  // as the help names them, in capitals
    std::size_t least, most;
    std::span<const Option> options;
    const char* what;     // one line
    const char* details;  // paragraphs for its own help
    int (*run)(const Arguments&, Streams&);
};

// Runs the command that `words` ask for, or writes the help that they ask for, and returns the exit code. What a command throws
// becomes a message. Run itself throws only when memory runs out.
int Run(std::span<const Command> commands, const std::vector<std::string>& words, Streams& streams);

}  // namespace zelt::ctl
