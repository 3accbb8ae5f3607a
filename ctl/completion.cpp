#include "ctl/completion.h"

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "ctl/help.h"

namespace zelt::ctl {
namespace {

constexpr std::string_view kGeneral[] = {"help", "completion", "manual", "--help", "--version"};

// The words that may come next, by the words before them: for example "log" after "", "show" after "log", and --help after "log
// show".
using WordsAfter = std::map<std::string, std::vector<std::string>>;

void Add(std::vector<std::string>& words, std::string_view word)
{
    if (std::find(words.begin(), words.end(), word) == words.end()) words.emplace_back(word);
}

WordsAfter Words(std::span<const Command> commands)
{
    WordsAfter words;
    for (const Command& command : commands) {
        const std::string name = command.name;
        const std::size_t first = name.find(' '), second = name.find(' ', first + 1);
        Add(words[""], name.substr(0, first));
        if (first != std::string::npos) Add(words[name.substr(0, first)], name.substr(first + 1, second - first - 1));
        std::vector<std::string>& options = words[name];
        for (const Option& option : command.options) Add(options, option.name);
        Add(options, "--help");
    }
    for (const std::string_view word : kGeneral) Add(words[""], word);
    words["completion"] = {"bash", "powershell"};
    return words;
}

// For each option with a choice of values, such as "in|out": these values.
WordsAfter Choices(std::span<const Command> commands)
{
    WordsAfter choices;
    for (const Command& command : commands) {
        for (const Option& option : command.options) {
            const std::string_view value = option.value ? option.value : "";
            if (value.find('|') == std::string_view::npos) continue;
            for (std::size_t begin = 0; begin <= value.size();) {
                const std::size_t end = std::min(value.find('|', begin), value.size());
                Add(choices[option.name], value.substr(begin, end - begin));
                begin = end + 1;
            }
        }
    }
    return choices;
}

std::string Joined(const std::vector<std::string>& words, std::string_view between, std::string_view quote = "")
{
    std::string text;
    for (const std::string& word : words) {
        if (!text.empty()) text += between;
        text.append(quote).append(word).append(quote);
    }
    return text;
}

void WriteBash(std::span<const Command> commands, Output& out)
{
    out << "# Completion of zeltctl for bash; read it with: source <(zeltctl completion bash)\n"
           "_zeltctl()\n"
           "{\n"
           "    local current=${COMP_WORDS[COMP_CWORD]} command= words= i\n"
           "    for ((i = 1; i < COMP_CWORD && i < 3; ++i)); do\n"
           "        [[ ${COMP_WORDS[i]} == -* ]] || command+=${command:+ }${COMP_WORDS[i]}\n"
           "    done\n"
           "    case ${COMP_WORDS[COMP_CWORD - 1]} in\n";
    for (const auto& [option, words] : Choices(commands)) {
        out << "    " << option << ") COMPREPLY=($(compgen -W '" << Joined(words, " ")
            << "' -- \"$current\")); return ;;\n";
    }
    out << "    esac\n"
           "    case $command in\n";
    for (const auto& group : Words(commands)) {
        const auto& [before, words] = group;
        if (before.empty()) {
            out << "    '') words='" << Joined(words, " ") << "' ;;\n";
        } else {
            // The script joins the first two words. After a command of one word, the second word does not belong to its name,
            // so the pattern ends in *.
            const bool isGroup = std::any_of(commands.begin(), commands.end(), [&](const Command& command) {
                return std::string_view(command.name).starts_with(group.first + ' ');
            });
            out << "    '" << before << (isGroup || before.find(' ') != std::string::npos ? "')" : "'*)") << " words='"
                << Joined(words, " ") << "' ;;\n";
        }
    }
    out << "    esac\n"
           "    # Unless an option is being typed, a word that is not a command is a file.\n"
           "    [[ $current == -* || $words != -* ]] || words=\n"
           "    COMPREPLY=($(compgen -W \"$words\" -- \"$current\"))\n"
           "}\n"
           "complete -o bashdefault -o default -F _zeltctl zeltctl\n";
}

void WritePowerShell(std::span<const Command> commands, Output& out)
{
    out << "# Completion of zeltctl for PowerShell; run it with: zeltctl completion powershell | Out-String | "
           "Invoke-Expression\n"
           "Register-ArgumentCompleter -Native -CommandName zeltctl, zeltctl64 -ScriptBlock {\n"
           "    param($word, $ast, $position)\n"
           "    $words = @{\n";
    for (const auto& [before, words] : Words(commands)) {
        out << "        '" << before << "' = @(" << Joined(words, ", ", "'") << ")\n";
    }
    for (const auto& [option, words] : Choices(commands)) {
        out << "        '" << option << "' = @(" << Joined(words, ", ", "'") << ")\n";
    }
    out << "    }\n"
           "    $given = @($ast.CommandElements | Select-Object -Skip 1 | ForEach-Object { \"$_\" })\n"
           "    if ($word) { $given = @($given | Select-Object -SkipLast 1) }\n"
           "    $key = ''\n"
           "    foreach ($one in $given) {\n"
           "        $longer = \"$key $one\".Trim()\n"
           "        if ($words.ContainsKey($longer)) { $key = $longer }\n"
           "    }\n"
           "    if ($given.Count -gt 0 -and $given[-1].StartsWith('--') -and $words.ContainsKey($given[-1])) {\n"
           "        $key = $given[-1]\n"
           "    }\n"
           "    $words[$key] | Where-Object { $_ -like \"$word*\" -and ($word -or -not $_.StartsWith('-')) } |\n"
           "        ForEach-Object { [System.Management.Automation.CompletionResult]::new($_, $_, 'ParameterValue', "
           "$_) }\n"
           "}\n";
}

// Escapes a text for roff, the language of man pages: no line may begin with one of its control characters, and roff would show
// a plain - as a hyphen instead of the minus sign of an option.
std::string Roff(std::string_view text)
{
    std::string out;
    bool atStart = true;
    for (const char c : text) {
        if (atStart && (c == '.' || c == '\'')) out += "\\&";
        if (c == '\\')
            out += "\\e";
        else if (c == '-')
            out += "\\-";
        else
            out += c;
        atStart = c == '\n';
    }
    return out;
}

}  // namespace

void WriteCompletion(std::span<const Command> commands, std::string_view shell, Output& out)
{
    if (shell == "bash") return WriteBash(commands, out);
    if (shell == "powershell") return WritePowerShell(commands, out);
    throw UsageError("\"completion\" takes bash or powershell");
}

void WriteManual(std::span<const Command> commands, Output& out)
{
    out << ".TH ZELTCTL 1 \"\" \"zeltctl " ZELT_VERSION
           "\"\n"
           ".SH NAME\n"
           "zeltctl \\- ZELT from the command line\n"
           ".SH SYNOPSIS\n"
           ".B zeltctl\n"
           ".I COMMAND\n"
           "[\\fIOPTIONS\\fR]\n"
           ".SH COMMANDS\n";
    for (const Command& command : commands) {
        out << ".SS " << Roff(command.name);
        if (*command.operands) out << " \\fI" << Roff(command.operands) << "\\fR";
        out << '\n' << Roff(command.what) << ".\n";
        if (*command.details) {
            // Without filling (.nf), a table keeps its lines.
            const bool isTable = std::string_view(command.details).find("\n  ") != std::string_view::npos;
            out << ".PP\n" << (isTable ? ".nf\n" : "") << Roff(command.details) << '\n' << (isTable ? ".fi\n" : "");
        }
        for (const Option& option : command.options) {
            out << ".TP\n\\fB" << Roff(option.name) << "\\fR";
            if (option.value) out << " \\fI" << Roff(option.value) << "\\fR";
            out << '\n' << Roff(option.what) << '\n';
        }
    }
    out << ".SH EXIT STATUS\n";
    for (const auto& [code, meaning] : kExitCodes) {
        out << ".TP\n" << code << '\n' << Roff(meaning) << '\n';
    }
}

}  // namespace zelt::ctl
