#include "ctl/output.h"

#include <charconv>
#include <iterator>

namespace zelt::ctl {

Output& Output::operator<<(long long number) { return Number(number, 0); }

Output& Output::Number(long long number, std::size_t width)
{
    char text[24];
    const auto end = std::to_chars(text, std::end(text), number).ptr;
    const auto length = static_cast<std::size_t>(end - text);
    if (length < width) Fill(width - length);
    buffer.append(text, end);
    return *this;
}

void Output::AppendStyle(Style style)
{
    switch (style) {
        case Style::Plain: buffer += "\x1b[0m"; break;
        case Style::Heading: buffer += "\x1b[1m"; break;
        case Style::Inward: buffer += "\x1b[34m"; break;
        case Style::Outward: buffer += "\x1b[35m"; break;
        case Style::Bad: buffer += "\x1b[31m"; break;
        case Style::Warning: buffer += "\x1b[33m"; break;
        case Style::Faint: buffer += "\x1b[2m"; break;
    }
}

bool WantsColours(bool isTerminal, const char* noColour, const char* terminal)
{
    return isTerminal && !(noColour && *noColour) && !(terminal && std::string_view(terminal) == "dumb");
}

bool Output::Flush()
{
    if (!stream) return true;
    failed |= std::fwrite(buffer.data(), 1, buffer.size(), stream) != buffer.size();
    flushed += buffer.size();
    buffer.clear();
    failed |= std::fflush(stream) != 0;
    return !failed;
}

}  // namespace zelt::ctl
