#include "ctl/json_writer.h"

#include <cstdio>

namespace zelt::ctl {

void AppendJsonString(Output& out, std::string_view text)
{
    out << '"';
    std::size_t done = 0;
    for (std::size_t i = 0; i < text.size();) {
        // Nearly every character is plain.
        if (text[i] >= 0x20 && text[i] < 0x7F && text[i] != '"' && text[i] != '\\') {
            ++i;
            continue;
        }
        const Character character = FirstCharacter(text.substr(i));
        const bool special = character.code == '"' || character.code == '\\';
        if (special || IsHidden(character.code) || !character.valid) {
            out << text.substr(done, i - done);
            done = i + character.length;
            if (special) {
                out << '\\' << static_cast<char>(character.code);
            } else {
                constexpr unsigned kReplacement = 0xFFFD;
                char escape[8];
                std::snprintf(escape, sizeof escape, "\\u%04x", character.valid ? character.code : kReplacement);
                out << escape;
            }
        }
        i += character.length;
    }
    out << text.substr(done) << '"';
}

void JsonWriter::Separate()
{
    if (!first && !afterKey) out << ',';
    first = afterKey = false;
}

JsonWriter& JsonWriter::NewLine()
{
    if (!first) out << ',';
    out << '\n';
    first = true;
    return *this;
}

JsonWriter& JsonWriter::Begin(char bracket)
{
    Separate();
    out << bracket;
    first = true;
    return *this;
}

JsonWriter& JsonWriter::End(char bracket)
{
    out << bracket;
    first = false;
    return *this;
}

JsonWriter& JsonWriter::Key(std::string_view name)
{
    Separate();
    AppendJsonString(out, name);
    out << ':';
    afterKey = true;
    return *this;
}

JsonWriter& JsonWriter::String(std::string_view text)
{
    Separate();
    AppendJsonString(out, text);
    return *this;
}

JsonWriter& JsonWriter::Number(long long number)
{
    Separate();
    out << number;
    return *this;
}

JsonWriter& JsonWriter::Number(std::string_view digits)
{
    Separate();
    out << digits;
    return *this;
}

JsonWriter& JsonWriter::Bool(bool value)
{
    Separate();
    out << (value ? "true" : "false");
    return *this;
}

}  // namespace zelt::ctl
