// The UTF-8 text that the program writes. It is collected, and written to a stream in large pieces: one Output is for the data
// (standard output), one for the messages (standard error). Hidden characters (see visible_text.h) appear as codes, except tabs
// and line ends. An Output without a stream keeps everything that is written to it.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

#include "ctl/visible_text.h"

namespace zelt::ctl {

// What kind of text follows, for terminals with colours.
enum class Style { Plain, Heading, Inward, Outward, Bad, Warning, Faint };

class Output {
public:
    // The caller keeps the stream.
    explicit Output(std::FILE* stream = nullptr) : stream(stream) {}
    ~Output() { Flush(); }
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    Output& operator<<(std::string_view text)
    {
        constexpr std::size_t kShort = 64;
        if (text.size() <= kShort && IsPrintable(text)) {
            buffer += text;
        } else {
            AppendVisible(buffer, text);
        }
        if (stream && buffer.size() >= kPiece) Flush();
        return *this;
    }
    // Writes bytes that are not text, unchanged.
    Output& Bytes(std::string_view bytes)
    {
        buffer += bytes;
        if (stream && buffer.size() >= kPiece) Flush();
        return *this;
    }
    Output& operator<<(char c)
    {
        buffer += c;
        return *this;
    }
    Output& operator<<(long long number);
    Output& operator<<(int number) { return *this << static_cast<long long>(number); }
    // With blanks before the number, so that numbers line up in columns.
    Output& Number(long long number, std::size_t width);
    Output& Fill(std::size_t count, char c = ' ')
    {
        buffer.append(count, c);
        return *this;
    }

    // Without this call, styles change nothing.
    void UseColours() { hasColours = true; }
    Output& operator<<(Style style)
    {
        if (hasColours) AppendStyle(style);
        return *this;
    }

    // How many bytes have been written, flushed or not.
    std::size_t Written() const { return flushed + buffer.size(); }
    // Removes what was written after the first `count` bytes, if none of it has been flushed. For text that may turn out to be
    // unnecessary.
    void TakeBack(std::size_t count)
    {
        if (count >= flushed && count < Written()) buffer.resize(count - flushed);
    }

    // False once something could not be written, for example to a full disk.
    bool Flush();

    const std::string& Text() const { return buffer; }

private:
    static constexpr std::size_t kPiece = 1 << 16;

    void AppendStyle(Style style);

    std::FILE* const stream;
    std::string buffer;
    std::size_t flushed = 0;
    bool failed = false, hasColours = false;
};

// Whether to use colours: on a terminal that has them, unless the user wants none. The texts are the values of the variables
// NO_COLOR and TERM, null when they are not set.
bool WantsColours(bool isTerminal, const char* noColour, const char* terminal);

// How many messages a command only counted instead of showing them, in all its logs.
struct LeftOut {
    long long queries = 0;  // see MessageKind::Query
    long long alike = 0;    // warnings like one that is shown
};

struct Streams {
    Output& data;
    Output& messages;
    LeftOut leftOut = {};
};

}  // namespace zelt::ctl
