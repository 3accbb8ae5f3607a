#include "ctl/command.h"

#include <charconv>
#include <exception>
#include <new>

#include "ctl/help.h"

namespace zelt::ctl {
namespace {

struct Match {
    const Command* command;
    std::size_t words;  // that its name takes
};

std::optional<Match> FindCommand(std::span<const Command> commands, const std::vector<std::string>& words)
{
    for (const Command& command : commands) {
        const std::string_view name = command.name;
        if (words[0] == name) return Match{&command, 1};
        if (words.size() > 1 && words[0] + ' ' + words[1] == name) return Match{&command, 2};
    }
    return {};
}

const Option& FindOption(const Command& command, std::string_view name)
{
    for (const Option& option : command.options) {
        if (name == option.name) return option;
    }
    throw UsageError("\"" + std::string(command.name) + "\" has no option \"" + std::string(name) + "\"");
}

Arguments Parse(const Command& command, std::span<const std::string> words)
{
    std::vector<std::string> operands;
    std::map<std::string, std::string, std::less<>> options;
    bool onlyOperands = false;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (onlyOperands || !word.starts_with('-') || word == "-") {
            operands.push_back(word);
        } else if (word == "--") {
            onlyOperands = true;
        } else {
            // The value follows an equals sign or is the next word.
            const std::size_t sign = word.find('=');
            const Option& option = FindOption(command, std::string_view(word).substr(0, sign));
            std::string value;
            if (!option.value) {
                if (sign != std::string::npos) throw UsageError(std::string(option.name) + " takes no value");
            } else if (sign != std::string::npos) {
                value = word.substr(sign + 1);
            } else if (++i < words.size()) {
                value = words[i];
            } else {
                throw UsageError(std::string(option.name) + " lacks its value, " + option.value);
            }
            if (!options.emplace(option.name, value).second) {
                throw UsageError(std::string(option.name) + " is given twice");
            }
        }
    }
    if (operands.size() < command.least || operands.size() > command.most) {
        throw UsageError("\"" + std::string(command.name) + "\" takes " +
                         (command.most ? command.operands : "nothing but options"));
    }
    return {std::move(operands), std::move(options)};
}

bool Contains(std::span<const std::string> words, std::string_view wanted)
{
    for (const std::string& word : words) {
        if (word == "--") return false;
        if (word == wanted) return true;
    }
    return false;
}

int RunMatch(const Match& match, std::span<const std::string> rest, Streams& streams)
{
    if (Contains(rest, "--help")) {
        WriteCommandHelp(*match.command, streams.data);
        return kFine;
    }
    if (Contains(rest, "--version")) {
        WriteVersion(streams.data);
        return kFine;
    }
    return match.command->run(Parse(*match.command, rest), streams);
}

int RunWords(std::span<const Command> commands, const std::vector<std::string>& words, Streams& streams)
{
    if (words.empty()) throw UsageError("a command is missing");
    if (words[0] == "--version") {
        WriteVersion(streams.data);
        return kFine;
    }
    const bool wantsHelp = words[0] == "--help" || words[0] == "help";
    if (wantsHelp && words.size() == 1) {
        WriteHelp(commands, streams.data);
        return kFine;
    }
    std::vector<std::string> named = words;
    if (wantsHelp) named.erase(named.begin());
    if (const auto match = FindCommand(commands, named)) {
        if (wantsHelp) named.emplace_back("--help");
        return RunMatch(*match, std::span(named).subspan(match->words), streams);
    }
    if (WriteGroupHelp(commands, named, streams.data)) return kFine;
    throw UsageError("there is no command \"" + named[0] + (named.size() > 1 ? " " + named[1] : "") + "\"");
}

}  // namespace

std::optional<std::string> Arguments::Value(std::string_view option) const
{
    const auto found = options.find(option);
    if (found == options.end()) return {};
    return found->second;
}

std::optional<double> Arguments::Number(std::string_view option) const
{
    const auto text = Value(option);
    if (!text) return {};
    double number = 0;
    const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), number);
    if (error != std::errc() || end != text->data() + text->size() || !(number >= 0)) {
        throw UsageError(std::string(option) + " wants a number, not \"" + *text + "\"");
    }
    return number;
}

int Run(std::span<const Command> commands, const std::vector<std::string>& words, Streams& streams)
{
    int result;
    try {
        result = RunWords(commands, words, streams);
    } catch (const UsageError& error) {
        streams.messages << "zeltctl: " << error.what() << "; zeltctl --help tells more\n";
        result = kUsage;
    } catch (const Refusal& refusal) {
        streams.messages << "zeltctl: " << refusal.what() << '\n';
        result = kUsage;
    } catch (const std::bad_alloc&) {
        streams.messages << "zeltctl: out of memory\n";
        result = kUnreadable;
    } catch (const std::exception& error) {
        streams.messages << "zeltctl: " << error.what() << '\n';
        result = kUnreadable;
    } catch (...) {
        streams.messages << "zeltctl: an unexpected error\n";
        result = kUnreadable;
    }
    if (!streams.data.Flush()) {
        streams.messages << "zeltctl: the output cannot be written\n";
        result = kUnreadable;
    }
    streams.messages.Flush();
    return result;
}

}  // namespace zelt::ctl
