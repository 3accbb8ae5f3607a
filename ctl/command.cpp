#include "ctl/command.h"

#include <charconv>
#include <cmath>
#include <exception>
#include <new>

#include "ctl/completion.h"
#include "ctl/elsewhere.h"
#include "ctl/help.h"
#include "ctl/similar.h"

namespace zelt::ctl {
namespace {

struct Match {
    const Command* command;
    std::size_t words;  // how many words its name has
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
    std::vector<std::string_view> names = {"--help"};
    for (const Option& option : command.options) names.emplace_back(option.name);
    throw UsageError("\"" + std::string(command.name) + "\" has no option \"" + std::string(name) + "\"" +
                     DidYouMean(MostSimilar(name, names)));
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
    if (Contains(rest, "--help") || Contains(rest, "-h")) {
        WriteCommandHelp(*match.command, streams.data);
        return kFine;
    }
    if (Contains(rest, "--version")) {
        WriteVersion(streams.data);
        return kFine;
    }
    return match.command->run(Parse(*match.command, rest), streams);
}

[[noreturn]] void ThrowUnknown(std::span<const Command> commands, const std::vector<std::string>& words)
{
    const std::string& first = words[0];
    const std::string both = words.size() > 1 ? first + ' ' + words[1] : first;
    for (const std::string_view name : kWindowsCommands) {
        if (name != first && name != both) continue;
        throw Refusal("\"" + std::string(name) + "\" is about ZELT on this computer and needs Windows");
    }
    std::vector<std::string_view> names = {"help", "completion", "manual"};
    for (const Command& command : commands) {
        const std::string_view name = command.name;
        const std::size_t blank = name.find(' ');
        // The user left out the first word of the name.
        if (blank != std::string_view::npos && name.substr(blank + 1) == first) {
            throw UsageError("there is no command \"" + first + "\"" + DidYouMean(name));
        }
        names.push_back(name);
        names.push_back(name.substr(0, blank));
    }
    std::string_view meant = MostSimilar(both, names);
    if (meant.empty()) meant = MostSimilar(first, names);
    throw UsageError("there is no command \"" + both + "\"" + DidYouMean(meant));
}

int RunWords(std::span<const Command> commands, const std::vector<std::string>& words, Streams& streams)
{
    if (words.empty()) throw UsageError("a command is missing");
    if (words[0] == "--version") {
        WriteVersion(streams.data);
        return kFine;
    }
    if (words[0] == "completion") {
        if (words.size() != 2) throw UsageError("\"completion\" takes bash or powershell");
        WriteCompletion(commands, words[1], streams.data);
        return kFine;
    }
    if (words[0] == "manual" && words.size() == 1) {
        WriteManual(commands, streams.data);
        return kFine;
    }
    const bool wantsHelp = words[0] == "--help" || words[0] == "-h" || words[0] == "help";
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
    ThrowUnknown(commands, named);
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
    if (error != std::errc() || end != text->data() + text->size() || !(number >= 0) || std::isinf(number)) {
        throw UsageError(std::string(option) + " wants a number, not \"" + *text + "\"");
    }
    return number;
}

std::optional<std::size_t> Arguments::Count(std::string_view option, int least) const
{
    constexpr int kMost = 1'000'000;
    const auto text = Value(option);
    if (!text) return {};
    int count = 0;
    const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), count);
    if (error != std::errc() || end != text->data() + text->size() || count < least || count > kMost) {
        throw UsageError(std::string(option) + " wants a whole number from " + std::to_string(least) + " to " +
                         std::to_string(kMost) + ", not \"" + *text + "\"");
    }
    return static_cast<std::size_t>(count);
}

int Run(std::span<const Command> commands, const std::vector<std::string>& words, Streams& streams)
{
    int result;
    try {
        result = RunWords(commands, words, streams);
    } catch (const UsageError& error) {
        const std::string_view what = error.what();
        streams.messages << "zeltctl: " << what << (what.ends_with('?') ? " " : "; ") << "see zeltctl --help\n";
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
