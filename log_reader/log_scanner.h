// Reads a log that is exactly as ZELT writes it: one tag to a line, ASCII, five entities. It never guesses: at the first line
// that ZELT would not have written, or that has no end, it stops and names the place from which the parser delivers the events
// that are still missing. A line counts only when all of it is right.
//
// It reads pieces of the file into a buffer rather than mapping it: if another process truncates a mapped file, the program
// crashes, and a 32-bit process has no room for large files. The texts of its events are views of its buffers; it allocates
// only where a buffer has to grow.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "log_reader/byte_search.h"
#include "log_reader/log_reader.h"
#include "log_reader/resume_point.h"

namespace zelt {

// How much it reads at once. Tests use smaller pieces, so that a short log has many ends of pieces.
struct ScanSizes {
    std::size_t block = kReadAhead;
    std::size_t longest = std::size_t{1} << 20;  // a line that needs a larger buffer is left to the parser
};

// The text of an attribute exactly as in the file.
struct RawText {
    const char *begin, *end;
    bool hasEntities;
};

// What the parser would have done with the file up to here. It takes a portion at a time, stops at the first tag that is not
// complete, and discards what it has parsed once that is more than kKept bytes. When it discards, it forgets how far it has
// looked ahead, so the place affects what it reports about a damaged file. Therefore the parser takes over only where it will
// discard at the same place of the file as it would have without the scanner. All offsets are in the file.
struct ParserState {
    static constexpr std::int64_t kFirst = 4, kPortion = 512, kKept = 4096, kBehind = 80;

    std::int64_t portion = kFirst + kPortion;  // the end of the next portion
    std::int64_t base = 0;                     // what comes before was discarded
    std::int64_t current = 0, before = 0;      // where it stopped, at the end of the last portion and of the one before
    bool inTag = false;                        // it has seen part of the tag there
    std::int64_t afterTag = 0;                 // where the latest line's tag ended
};

template <class Bytes>
class LogScanner {
public:
    LogScanner(LogInput& input, LogSink& sink, const ScanSizes& sizes = {});
    LogScanner(const LogScanner&) = delete;
    LogScanner& operator=(const LogScanner&) = delete;

    // For an input that is a part of a log: it begins at the start of a line, inside elements of these kinds. Call it before
    // Scan, which then returns nothing at the end of the part.
    void BeginInside(const std::vector<EventKind>& kinds);

    // Complete or Cancelled; nothing when the parser has to continue.
    std::optional<LogReadResult> Scan();

    // Where the next line begins. During LogSink::Continue, exactly what comes before it has been delivered.
    std::int64_t Offset() const { return InFile(position); }
    int Line() const { return line; }

    // For the parser: where it takes over, what was read from there on, and what the input returned when it gave no more.
    ResumePoint Resume() const;
    std::string_view Read() const { return {At(resume.position), filled - resume.position}; }
    std::optional<int> Last() const { return last; }

private:
    enum class Step { Done, Unknown, Cancelled };

    // The beginning of a line. Every event before it has been delivered.
    struct Place {
        std::size_t position = 0;  // in the buffer
        std::int64_t origin = 0;   // see ResumePoint
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
    std::size_t EndOfLastLine(std::size_t before) const;
    void Remember(Place& place) const;
    void FollowParser(std::int64_t tag, std::int64_t end);

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
    std::int64_t InFile(std::size_t at) const { return discarded + static_cast<std::int64_t>(at); }

    LogInput& input;
    LogSink& sink;
    const ScanSizes sizes;
    const bool wantsLines;

    std::vector<char> buffer;
    std::size_t filled = 0, position = 0;  // position: of the next line
    std::int64_t discarded = 0;            // bytes of the file before the buffer
    std::optional<int> last;

    int line = 1;  // of the next line
    enum class Stage { Declaration, Root, Content, Over } stage = Stage::Declaration;
    std::vector<OpenElement> open;
    std::int64_t done = 0;  // beginnings and ends, including those that are left out
    // The latest element, if it may have children, until the next line shows whether it has.
    bool isPending = false;
    LogEvent pending = {};
    std::size_t pendingPosition = 0;
    std::vector<char> nameRoom, textRoom;  // decoded texts; the pending event may have both

    std::size_t tag = 0;  // where the line's tag begins
    ParserState parser;
    Place resume, candidate;  // `candidate` becomes `resume` when it proves to be good
    bool hasCandidate = false, isCandidateDue = false;
};

extern template class LogScanner<PlainBytes>;
#ifdef __SSE2__
extern template class LogScanner<VectorBytes>;
#endif

}  // namespace zelt
