#include "log_reader/log_scanner.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "log_reader/log_markup.h"
#include "log_reader/resumed_input.h"

namespace zelt {
namespace {

// A log that nests deeper than this is left to the parser, which objects to more than 255 levels of elements.
constexpr std::size_t kDeepestScanned = 200;

// The parser takes more blanks than this as text, without looking at what follows, so a line that begins with more is left to
// it.
constexpr std::size_t kMostBlanks = 250;

// A place where the parser may take over is noted this many bytes after what the parser has discarded.
constexpr std::int64_t kCandidateDistance = 2600;

// The first bytes of a line, which show what it is.
using Word = std::uint64_t;

template <std::size_t Size>
constexpr Word WordOf(const char (&text)[Size])
{
    static_assert(Size == sizeof(Word) + 1);
    std::array<char, sizeof(Word)> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = text[i];
    return std::bit_cast<Word>(bytes);
}

Word WordAt(const char* at)
{
    Word word;
    std::memcpy(&word, at, sizeof word);
    return word;
}

// The place after a literal text; null when something else is there.
template <std::size_t Size>
const char* After(const char* at, const char (&text)[Size])
{
    static_assert(Size - 1 <= kSlack);
    return std::memcmp(at, text, Size - 1) == 0 ? at + (Size - 1) : nullptr;
}

struct Entity {
    char character;
    std::size_t length;
};

// The entity that begins here; its length is 0 when logs have no such entity.
inline Entity EntityAt(const char* at)
{
    // The quote comes first because most values with entities are texts in quotes.
    if (After(at, "&quot;")) return {'"', 6};
    if (After(at, "&lt;")) return {'<', 4};
    if (After(at, "&gt;")) return {'>', 4};
    if (After(at, "&amp;")) return {'&', 5};
    return {'\'', After(at, "&apos;") ? 6u : 0u};
}

// Continues ReadText at the first byte that is not plain text, where an entity must begin.
template <class Bytes>
const char* ReadEntities(RawText& text)
{
    text.hasEntities = true;
    while (true) {
        const Entity entity = EntityAt(text.end);
        if (entity.length == 0) return nullptr;
        text.end = Bytes::EndOfPlainText(text.end + entity.length);
        if (*text.end == '"') return text.end;
    }
}

// Reads the text that begins here, and returns the place of the closing quote; null for a text that ZELT would not have
// written.
template <class Bytes>
inline const char* ReadText(const char* from, RawText& text)
{
    text = {from, Bytes::EndOfPlainText(from), false};
    return *text.end == '"' ? text.end : ReadEntities<Bytes>(text);
}

// Makes room for a text of this length and for the bytes that copying writes after it.
char* RoomFor(std::size_t length, std::vector<char>& room)
{
    if (room.size() < length + kSlack) room.resize(length + kSlack);
    return room.data();
}

// The text, copied into `room` unless it is there already.
std::string_view Kept(std::string_view text, std::vector<char>& room)
{
    if (text.data() == room.data()) return text;
    char* const begin = RoomFor(text.size(), room);
    text.copy(begin, text.size());
    return {begin, text.size()};
}

template <class Bytes>
std::string_view DecodeInto(std::vector<char>& room, const RawText& text)
{
    char* const begin = RoomFor(static_cast<std::size_t>(text.end - text.begin), room);
    char* out = begin;
    for (const char* at = text.begin;;) {
        const char* const markup = Bytes::CopyToMarkup(at, out);
        out += markup - at;
        if (markup == text.end) break;
        const Entity entity = EntityAt(markup);
        *out++ = entity.character;
        at = markup + entity.length;
    }
    return {begin, static_cast<std::size_t>(out - begin)};
}

template <class Bytes>
inline std::string_view Decoded(const RawText& text, std::vector<char>& room)
{
    return text.hasEntities ? DecodeInto<Bytes>(room, text) : std::string_view(text.begin, text.end);
}

// Whether `beginning`, an incomplete line, may become one that ZELT writes. Without this check, a log in a single line would be
// read far ahead of its events.
bool MayBecomeLine(std::string_view beginning)
{
    const std::size_t tagEnd = beginning.find('>');
    return tagEnd == std::string_view::npos || std::string_view("\r\n").starts_with(beginning.substr(tagEnd + 1));
}

}  // namespace

template <class Bytes>
LogScanner<Bytes>::LogScanner(LogInput& input, LogSink& sink, const ScanSizes& sizes)
    : input(input), sink(sink), sizes(sizes), wantsLines(sink.WantsLines()), buffer(2 * sizes.block + kSlack)
{
    open.reserve(kDeepestScanned);
}

template <class Bytes>
void LogScanner<Bytes>::BeginInside(const std::vector<EventKind>& kinds)
{
    stage = Stage::Content;
    for (const EventKind kind : kinds) open.push_back({kind, false, 0});
}

template <class Bytes>
std::optional<LogReadResult> LogScanner<Bytes>::Scan()
{
    while (ReadMore()) {
        const Step step = ScanRead();
        if (step == Step::Cancelled) return LogReadResult::Cancelled;
        if (step == Step::Unknown) return {};
    }
    if (last == 0 && stage == Stage::Over && position == filled) return LogReadResult::Complete;
    return {};
}

// Scans the lines that are complete.
template <class Bytes>
typename LogScanner<Bytes>::Step LogScanner<Bytes>::ScanRead()
{
    const Step step = ScanTo(EndOfLastLine(filled));
    if (step != Step::Done) return step;
    // An input that waits for more inserts a comment after the end of a line; no line end follows the comment.
    if (After(At(position), "<!")) return Step::Unknown;
    return MayBecomeLine({At(position), filled - position}) ? Step::Done : Step::Unknown;
}

template <class Bytes>
ResumePoint LogScanner<Bytes>::Resume() const
{
    return {InFile(resume.position), resume.origin, resume.line, resume.open, done - resume.done, open};
}

// False when the input gives no more, or when the line needs a larger buffer than allowed.
template <class Bytes>
bool LogScanner<Bytes>::ReadMore()
{
    if (buffer.size() - kSlack - filled < sizes.block) MakeRoom();
    if (buffer.size() - kSlack - filled < sizes.block) return false;
    const int count = input.Read(buffer.data() + filled, static_cast<int>(sizes.block));
    if (count <= 0) {
        last = count;
        return false;
    }
    filled += static_cast<std::size_t>(count);
    std::memset(buffer.data() + filled, 0, kSlack);
    return true;
}

// Removes what neither an event nor the parser needs any more, and enlarges the buffer if that is not enough.
template <class Bytes>
void LogScanner<Bytes>::MakeRoom()
{
    if (isPending && !open.back().isLeftOut) {
        // Its texts may be in the part of the buffer that moves.
        pending.name = Kept(pending.name, nameRoom);
        pending.text = Kept(pending.text, textRoom);
    }
    const std::size_t unneeded = resume.position;
    std::memmove(buffer.data(), At(unneeded), filled - unneeded);
    for (std::size_t* place : {&filled, &position, &pendingPosition, &resume.position, &candidate.position}) {
        *place -= std::min(*place, unneeded);
    }
    discarded += static_cast<std::int64_t>(unneeded);
    const std::size_t needed = filled + sizes.block + kSlack;
    if (needed > buffer.size() && needed <= sizes.longest) buffer.resize(std::max(needed, 2 * buffer.size()));
}

// The end of the last complete line that ends at or before `before`; `position` if there is none.
template <class Bytes>
std::size_t LogScanner<Bytes>::EndOfLastLine(std::size_t before) const
{
    while (before > position && *At(before - 1) != '\n') --before;
    return before;
}

template <class Bytes>
void LogScanner<Bytes>::Remember(Place& place) const
{
    place.position = isPending ? pendingPosition : position;
    place.line = isPending ? line - 1 : line;
    place.done = done;
    place.open.assign(open.begin(), open.end() - (isPending ? 1 : 0));
}

// Follows the parser past the ends of portions within this line. `tagStart` and `tagEnd` are those of the line's tag.
template <class Bytes>
void LogScanner<Bytes>::FollowParser(std::int64_t tagStart, std::int64_t tagEnd)
{
    while (parser.portion <= tagEnd + 2) {
        const bool isTagSeen = parser.portion > tagStart && parser.portion < tagEnd;
        const std::int64_t stop = isTagSeen ? tagStart : parser.portion >= tagEnd ? tagEnd : parser.afterTag;
        // The parser does not look at a portion that cannot complete the tag.
        if (!parser.inTag || stop != parser.current) {
            if (parser.current - parser.base > ParserState::kKept) {
                parser.base = parser.current - ParserState::kBehind;
                const std::int64_t latest = parser.current - ParserState::kKept - 1;
                candidate.origin = latest - latest % ParserState::kPortion;
                const std::int64_t room = InFile(candidate.position) - candidate.origin;
                if (hasCandidate && parser.before - candidate.origin <= ParserState::kKept &&
                    InFile(candidate.position) <= parser.before &&
                    room >= static_cast<std::int64_t>(LengthOfBeginning(candidate.open))) {
                    std::swap(resume, candidate);
                }
                hasCandidate = false;
            }
            parser.before = parser.current;
            parser.current = stop;
            parser.inTag = isTagSeen && parser.portion - tagStart >= 2;
        }
        parser.portion += ParserState::kPortion;
    }
}

template <class Bytes>
typename LogScanner<Bytes>::Step LogScanner<Bytes>::ScanTo(std::size_t end)
{
    while (position < end) {
        if (isCandidateDue) {
            isCandidateDue = false;
            hasCandidate = true;
            Remember(candidate);
        }
        const Step step = ScanLine();
        if (step != Step::Done) return step;
    }
    return Step::Done;
}

template <class Bytes>
typename LogScanner<Bytes>::Step LogScanner<Bytes>::ScanLine()
{
    const char* const at = Bytes::EndOfBlanks(At(position));
    tag = static_cast<std::size_t>(at - buffer.data());
    if (tag - position > kMostBlanks) return Step::Unknown;
    if (stage != Stage::Content) return Header(at);
    const char* from;
    switch (WordAt(at)) {
        case WordOf("<argval "): return (from = After(at, "<argval value=\"")) ? Value(from) : Step::Unknown;
        case WordOf("<arg nam"):
            from = After(at, "<arg name=\"");
            return from && IsInside(EventKind::Call) ? BeginNamed(EventKind::Argument, from) : Step::Unknown;
        case WordOf("</arg>\r\n"): return End(EventKind::Argument, at + sizeof(Word));
        case WordOf("<func na"):
            from = After(at, "<func name=\"");
            return from && (open.empty() || IsInside(EventKind::Call)) ? BeginNamed(EventKind::Call, from)
                                                                       : Step::Unknown;
        case WordOf("</func>\r"): return End(EventKind::Call, After(at, "</func>\r\n"));
        case WordOf("</argval"): return End(EventKind::Value, After(at, "</argval>\r\n"));
        case WordOf("<info va"): return Message(EventKind::Info, After(at, "<info value=\""));
        case WordOf("<warning"): return Message(EventKind::Warning, After(at, "<warning value=\""));
        case WordOf("<error v"): return Message(EventKind::Error, After(at, "<error value=\""));
        case WordOf("</zeltlo"):
            from = After(at, "</zeltlogdocument>\r\n");
            if (!from || !open.empty()) return Step::Unknown;
            stage = Stage::Over;
            PassLine(from);
            return Step::Done;
        default: return Step::Unknown;
    }
}

template <class Bytes>
typename LogScanner<Bytes>::Step LogScanner<Bytes>::Header(const char* at)
{
    const char* end = nullptr;
    if (stage == Stage::Declaration) {
        end = After(At(position), "<?xml version=\"1.0\" standalone=\"yes\"?>\r\n");
        stage = Stage::Root;
    } else if (stage == Stage::Root) {
        end = After(at, "<zeltlogdocument>\r\n");
        stage = Stage::Content;
    }
    if (!end) return Step::Unknown;
    PassLine(end);
    return Step::Done;
}

// A call or an argument, from its name on.
template <class Bytes>
typename LogScanner<Bytes>::Step LogScanner<Bytes>::BeginNamed(EventKind kind, const char* from)
{
    RawText name, text;
    const char* at = ReadText<Bytes>(from, name);
    if (!at || !(at = After(at, "\" direc=\""))) return Step::Unknown;
    const bool inward = *at == 'i';
    const bool isCall = kind == EventKind::Call;
    if (inward) {
        at = isCall ? After(at, "in\" object=\"") : After(at, "in\" type=\"");
    } else {
        at = isCall ? After(at, "out\" object=\"") : After(at, "out\" type=\"");
    }
    if (!at || !(at = ReadText<Bytes>(at, text)) || !(at = After(at, "\">\r\n")) || open.size() == kDeepestScanned) {
        return Step::Unknown;
    }
    SendPending(true);
    const bool isLeftOut = !isCall && !sink.WantsArguments();
    if (!isLeftOut) {
        pending = {kind,
                   inward,
                   false,
                   static_cast<int>(open.size()),
                   wantsLines ? line : 0,
                   Decoded<Bytes>(name, nameRoom),
                   Decoded<Bytes>(text, textRoom)};
    }
    Open(kind, isLeftOut, at);
    return Step::Done;
}

template <class Bytes>
typename LogScanner<Bytes>::Step LogScanner<Bytes>::Value(const char* from)
{
    if (!IsInside(EventKind::Argument) && !IsInside(EventKind::Value)) return Step::Unknown;
    RawText text;
    const char* const at = ReadText<Bytes>(from, text);
    if (!at) return Step::Unknown;
    const bool isLeftOut = open.back().isLeftOut;
    if (const char* end = After(at, "\"/>\r\n")) return Empty(EventKind::Value, text, isLeftOut, end);
    const char* const end = After(at, "\">\r\n");
    if (!end || open.size() == kDeepestScanned) return Step::Unknown;
    SendPending(true);
    if (!isLeftOut) {
        pending = {EventKind::Value,
                   false,
                   false,
                   static_cast<int>(open.size()),
                   wantsLines ? line : 0,
                   {},
                   Decoded<Bytes>(text, textRoom)};
    }
    Open(EventKind::Value, isLeftOut, end);
    return Step::Done;
}

template <class Bytes>
typename LogScanner<Bytes>::Step LogScanner<Bytes>::Message(EventKind kind, const char* from)
{
    RawText text;
    const char* at = from ? ReadText<Bytes>(from, text) : nullptr;
    if (!at || !(at = After(at, "\"/>\r\n"))) return Step::Unknown;
    return Empty(kind, text, false, at);
}

template <class Bytes>
typename LogScanner<Bytes>::Step LogScanner<Bytes>::Empty(EventKind kind, const RawText& text, bool isLeftOut,
                                                          const char* end)
{
    SendPending(true);
    done += 2;
    const int depth = static_cast<int>(open.size());
    const int thisLine = wantsLines ? line : 0;
    PassLine(end);
    if (isLeftOut) return Step::Done;
    sink.Begin({kind, false, false, depth, thisLine, {}, Decoded<Bytes>(text, textRoom), true});
    sink.End(kind, depth);
    return sink.Continue() ? Step::Done : Step::Cancelled;
}

template <class Bytes>
typename LogScanner<Bytes>::Step LogScanner<Bytes>::End(EventKind kind, const char* end)
{
    if (!end || !IsInside(kind)) return Step::Unknown;
    SendPending(false);
    ++done;
    const bool isLeftOut = open.back().isLeftOut;
    open.pop_back();
    PassLine(end);
    if (isLeftOut) return Step::Done;
    sink.End(kind, static_cast<int>(open.size()));
    return sink.Continue() ? Step::Done : Step::Cancelled;
}

template <class Bytes>
void LogScanner<Bytes>::Open(EventKind kind, bool isLeftOut, const char* end)
{
    open.push_back({kind, isLeftOut, line});
    isPending = true;
    pendingPosition = position;
    PassLine(end);
}

template <class Bytes>
void LogScanner<Bytes>::SendPending(bool hasChildren)
{
    if (!isPending) return;
    isPending = false;
    ++done;
    if (open.back().isLeftOut) return;
    pending.hasChildren = hasChildren;
    sink.Begin(pending);
}

template <class Bytes>
void LogScanner<Bytes>::PassLine(const char* end)
{
    position = static_cast<std::size_t>(end - buffer.data());
    ++line;
    const std::int64_t tagEnd = InFile(position) - 2;
    if (tagEnd + 2 >= parser.portion) FollowParser(InFile(tag), tagEnd);
    parser.afterTag = tagEnd;
    // The next line may become a candidate: it is far enough on for the text that opens the elements to fit before it, and the
    // parser has not yet discarded again.
    if (!hasCandidate && tagEnd - parser.base > kCandidateDistance && stage == Stage::Content) isCandidateDue = true;
}

template class LogScanner<PlainBytes>;
#ifdef __SSE2__
template class LogScanner<VectorBytes>;
#endif

}  // namespace zelt
