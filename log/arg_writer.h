// One arg element under construction: the writers of arguments (value_writers.h, enumeration_writers.h, variant_writer.h)
// append to it, and it is written to the file in one piece when it is finished. Levels count from the arg element's own: 0 is
// its indentation, 1 that of its values.
#pragma once

#include <cstring>
#include <type_traits>

#include "guard/foreign_call.h"
#include "log/log_document.h"
#include "log/log_text.h"

namespace zelt {

class ArgWriter {
public:
    // Runs `body`, which appends the values, between the opening and the closing tag, and writes the element. `type` is a text,
    // or a function `type(std::string&)` that appends it. When nothing is written, neither function is called. Values come from
    // other people's code: if one cannot be read, or memory runs out, "<unable to format value>" replaces them all.
    template <class Type, class Body>
    static void Write(LogDocument& document, const char* name, bool isIn, Type&& type, Body&& body) noexcept
    {
        document.WriteEntry([&] {
            ArgWriter arg(document);
            arg.Open(name, isIn);
            if constexpr (std::is_invocable_v<Type, std::string&>) {
                type(document.entry);
            } else {
                document.entry += type;
            }
            arg.Raw("\">\r\n");
            const std::size_t start = document.entry.size();
            if (FAILED(CallForeign([&] {
                    body(arg);
                    return S_OK;
                }))) {
                document.entry.resize(start);
                arg.EscapedValue("<unable to format value>");
            }
            arg.Line(0, "</arg>");
        });
    }

    // Appends the line `text` at a level.
    void Line(int level, std::string_view text);

    // An argval line with text that needs no escaping: given as text, or appended in place by `append(std::string&)`.
    void Value(std::string_view text, int level = 1)
    {
        ValueWith([text](std::string& out) { out += text; }, level);
    }
    template <class Append>
    void ValueWith(Append&& append, int level = 1)
    {
        Blanks(Indentation(level));
        Raw("<argval value=\"");
        append(document.entry);
        Raw("\"/>\r\n");
    }

    // An argval line whose text `write(char*)` writes as the functions of log_text.h do. False, and no line, if it returns null.
    template <class Write>
    bool ShortValue(Write&& write, int level = 1)
    {
        constexpr std::string_view kOpening = "<argval value=\"", kClosing = "\"/>\r\n";
        constexpr int kMostBlanks = 32;
        const int blanks = Indentation(level), inLine = blanks < kMostBlanks ? blanks : kMostBlanks;
        char line[kMostBlanks + kOpening.size() + kLongestShortText + kClosing.size()];
        std::memset(line, ' ', kMostBlanks);
        char* end = line + inLine;
        std::memcpy(end, kOpening.data(), kOpening.size());
        end = write(end + kOpening.size());
        if (!end) return false;
        std::memcpy(end, kClosing.data(), kClosing.size());
        end += kClosing.size();
        if (blanks > inLine) Blanks(blanks - inLine);
        document.entry.append(line, static_cast<std::size_t>(end - line));
        return true;
    }

    // An argval line with text to be escaped. If characters were lost and `what` is not null, the suppression warning about
    // `what` follows.
    void EscapedValue(std::string_view text, const char* what = nullptr, int level = 1);

    // Writes a sentence inside the element.
    void Say(Sentence sentence, std::initializer_list<std::string_view> holes = {}, int level = 1)
    {
        document.AppendSentence(sentence, holes, level);
    }
    void Say(Sentence sentence, int level) { Say(sentence, {}, level); }

    // The number of blanks that a line at `level` begins with.
    int Indentation(int level) const { return document.depth + level; }

    // For lines that the functions above do not make: these append text as it is.
    void Raw(std::string_view text) { document.entry += text; }
    template <class Append>
    void RawWith(Append&& append)
    {
        append(document.entry);
    }
    void Blanks(int count) { document.entry.append(static_cast<std::size_t>(count), ' '); }

private:
    explicit ArgWriter(LogDocument& document) : document(document) {}
    void Open(const char* name, bool isIn);

    LogDocument& document;
};

}  // namespace zelt
