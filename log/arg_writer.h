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
    // or a function `type(EntryText&)` that appends it. When nothing is written, neither function is called. Values come from
    // other people's code: if one cannot be read, or memory runs out, "<unable to format value>" replaces them all.
    template <class Type, class Body>
    static void Write(LogDocument& document, std::string_view name, bool isIn, Type&& type, Body&& body) noexcept
    {
        WriteOwn(document, name, isIn, std::forward<Type>(type), [&](ArgWriter& arg) {
            const std::size_t start = document.entry.Size();
            if (FAILED(CallForeign([&] {
                    body(arg);
                    return S_OK;
                }))) {
                document.entry.CutTo(start);
                arg.EscapedValue("<unable to format value>");
            }
        });
    }

    // The same for values that can be read and written without failing, like integers. If memory runs out, the entry is missing.
    template <class Type, class Body>
    static void WriteOwn(LogDocument& document, std::string_view name, bool isIn, Type&& type, Body&& body) noexcept
    {
        document.WriteEntry([&] {
            ArgWriter arg(document);
            arg.Open(name, isIn);
            if constexpr (std::is_invocable_v<Type, EntryText&>) {
                type(document.entry);
            } else {
                document.entry += type;
            }
            arg.Raw("\">\r\n");
            body(arg);
            arg.Line(0, "</arg>");
        });
    }

    // Appends the line `text` at a level.
    void Line(int level, std::string_view text);

    // An argval line with text that needs no escaping: given as text, or appended in place by `append(EntryText&)`.
    void Value(std::string_view text, int level = 1)
    {
        ValueWith([text](EntryText& out) { out += text; }, level);
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
        const auto blanks = static_cast<std::size_t>(Indentation(level));
        static_assert(kOpening.size() + kLongestShortText >= EntryText::kMostPastBlanks);
        return document.entry.AppendWith(blanks + kOpening.size() + kLongestShortText + kClosing.size(),
                                         [&](char* to) -> char* {
                                             to = EntryText::PutBlanks(to, blanks);
                                             std::memcpy(to, kOpening.data(), kOpening.size());
                                             char* const end = write(to + kOpening.size());
                                             if (!end) return nullptr;
                                             std::memcpy(end, kClosing.data(), kClosing.size());
                                             return end + kClosing.size();
                                         });
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
    void Blanks(int count) { document.entry.Blanks(static_cast<std::size_t>(count)); }

private:
    explicit ArgWriter(LogDocument& document) : document(document) {}
    void Open(std::string_view name, bool isIn);

    LogDocument& document;
};

}  // namespace zelt
