#include "ctl/help.h"

#include <algorithm>

namespace zelt::ctl {
namespace {

void WriteRow(std::string_view left, std::string_view right, std::size_t width, Output& out)
{
    out << "  " << left;
    out.Fill(left.size() < width ? width - left.size() : 0) << "  " << right << '\n';
}

std::string Form(const Command& command)
{
    std::string form = command.name;
    if (*command.operands) form.append(" ").append(command.operands);
    return form;
}

std::string Form(const Option& option)
{
    std::string form = option.name;
    if (option.value) form.append(" ").append(option.value);
    return form;
}

void WriteRows(std::span<const Command> commands, std::string_view group, Output& out)
{
    std::size_t width = 0;
    for (const Command& command : commands) width = std::max(width, Form(command).size());
    for (const Command& command : commands) {
        if (std::string_view(command.name).starts_with(group)) WriteRow(Form(command), command.what, width, out);
    }
}

void WriteEnd(Output& out)
{
    out << "\nzeltctl COMMAND --help tells more about a command. Data goes to standard output, messages to standard "
           "error.\n"
           "zeltctl completion bash and zeltctl completion powershell write completion, zeltctl manual a page for "
           "man.\n"
           "Exit codes:";
    for (const auto& [code, meaning] : kExitCodes) out << (code ? ", " : " ") << code << ' ' << meaning;
    out << ".\n";
}

}  // namespace

void WriteHelp(std::span<const Command> commands, Output& out)
{
    out << "zeltctl COMMAND [OPTIONS]\n\n";
    WriteRows(commands, "", out);
    WriteEnd(out);
}

bool WriteGroupHelp(std::span<const Command> commands, const std::vector<std::string>& words, Output& out)
{
    const bool onlyHelp = words.size() == 1 || (words.size() == 2 && (words[1] == "--help" || words[1] == "-h"));
    const std::string group = words[0] + ' ';
    const bool known = std::any_of(commands.begin(), commands.end(), [&](const Command& command) {
        return std::string_view(command.name).starts_with(group);
    });
    if (!onlyHelp || !known) return false;
    out << "zeltctl " << words[0] << " COMMAND [OPTIONS]\n\n";
    WriteRows(commands, group, out);
    WriteEnd(out);
    return true;
}

void WriteCommandHelp(const Command& command, Output& out)
{
    out << "zeltctl " << Form(command) << (command.options.empty() ? "\n\n" : " [OPTIONS]\n\n") << command.what
        << ".\n";
    if (*command.details) out << '\n' << command.details << '\n';
    if (command.options.empty()) return;
    out << '\n';
    std::size_t width = 0;
    for (const Option& option : command.options) width = std::max(width, Form(option).size());
    for (const Option& option : command.options) WriteRow(Form(option), option.what, width, out);
}

void WriteVersion(Output& out) { out << "zeltctl " ZELT_VERSION "\n"; }

}  // namespace zelt::ctl
