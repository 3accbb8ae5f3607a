// Reads a log exactly as ZELT writes it: a line an element, ASCII, five entities. It never guesses: at the first line that ZELT
// would not have written, or that has no end, it stops and names the place from which the parser gives the events that it has not
// delivered. A line counts only when all of it is right.
//
// It reads pieces of the file into a buffer rather than mapping it: a mapped page that another process truncates ends the program,
// and a 32-bit process has no room for large files. The texts of its events are views of the buffer; it allocates nothing for an
// element.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "log_reader/byte_search.h"
#include "log_reader/log_reader.h"
#include "log_reader/resume_point.h"

namespace zelt {

// How much it reads at once. Tests use smaller pieces, to see many of their ends in a short log.
struct ScanSizes {
    std::size_t block = kReadAhead;
    std::size_t lead =
        4096;  // of complete lines that the parser gets before the one that the scanner does not understand
    std::size_t longest = std::size_t{1} << 20;  // more than this is not kept for the sake of a line
};

// The text of an attribute as it is in the file.
struct RawText {
    const char *begin, *end;
    bool hasEntities;
};

template <class Bytes>
class LogScanner {
public:
    LogScanner(LogInput& input, LogSink& sink, const ScanSizes& sizes = {});
    LogScanner(const LogScanner&) = delete;
    LogScanner& operator=(const LogScanner&) = delete;

    // Complete or Cancelled; nothing when the parser has to go on.
    std::optional<LogReadResult> Scan();

    // For the parser: where, with what was read from there on, and what the input returned when it gave no more.
    ResumePoint Resume() const;
    std::string_view Read() const { return {At(resume.position), filled - resume.position}; }
    std::optional<int> Last() const { return last; }

private:
    enum class Step { Done, Unknown, Cancelled };

    // A beginning of a line before which every event is delivered.
    struct Place {
        std::size_t position = 0;  // in the buffer
        int line = 1;
        std::int64_t done = 0;
        std::vector<OpenElement> open;
    };

    const char* At(std::size_t position) const { return buffer.data() + position; }
    bool ReadMore();
    void MakeRoom();
    Step ScanRead();
    Step ScanTo(std::size_t end);
    Step ScanLine();
    std::size_t LineAround(std::size_t before) const;
    void AdvanceResume();
    void RememberNext();

    Step Header(const char* at);
    Step BeginNamed(EventKind kind, const char* from);
    Step Value(const char* from);
    Step Message(EventKind kind, const char* from);
    Step Empty(EventKind kind, const RawText& text, bool isLeftOut, const char* end);
    Step End(EventKind kind, const char* end);
    bool IsInside(EventKind kind) const { return !open.empty() && open.back().kind == kind; }
    void Open(EventKind kind, bool isLeftOut, const char* end);
    void SendPending(bool hasChildren);
    void PassLine(const char* end);

    LogInput& input;
    LogSink& sink;
    const ScanSizes sizes;
    const bool wantsLines;

    std::vector<char> buffer;
    std::size_t filled = 0, position = 0;  // position: of the next line
    std::int64_t discarded = 0;            // bytes of the file before the buffer
    std::optional<int> last;

    int line = 1;  // the next one's
    enum class Stage { Declaration, Root, Content, Over } stage = Stage::Declaration;
    std::vector<OpenElement> open;
    std::int64_t done = 0;  // beginnings and ends, with those that are left out
    // The latest element, if it may have children, until the next line shows whether it has.
    bool isPending = false;
    LogEvent pending = {};
    std::size_t pendingPosition = 0;
    std::string nameRoom, textRoom;  // decoded texts; the pending event may have both

    Place resume, next;  // the second replaces the first when enough has been read behind it
    bool hasNext = false;
};

extern template class LogScanner<PlainBytes>;
#ifdef __SSE2__
extern template class LogScanner<VectorBytes>;
#endif

}  // namespace zelt
