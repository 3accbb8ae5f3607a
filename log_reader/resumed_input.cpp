#include "log_reader/resumed_input.h"

#include <algorithm>

#include "log_reader/log_markup.h"

namespace zelt {
namespace {

// The parser takes kFirst bytes to recognise the encoding, then portions of kPortion. It asks for kRequest bytes at a time.
constexpr std::size_t kFirst = 4, kPortion = 512, kRequest = 4096;

constexpr std::string_view kTagEnd = ">\r\n";

// The beginning of the parser's document. It is as long as the file from the origin to the place where the parser takes over:
// blanks inside the root's tag fill it up.
std::string Beginning(const ResumePoint& start)
{
    if (start.offset == 0) return {};
    const auto length = static_cast<std::size_t>(start.offset - start.origin);
    std::string text(kLogHeader.substr(0, kLogHeader.size() - kTagEnd.size()));
    text.append(length - LengthOfBeginning(start.open), ' ').append(kTagEnd);
    for (const OpenElement& element : start.open) text.append("<").append(NameOfParent(element.kind)).append(kTagEnd);
    return text;
}

}  // namespace

std::size_t LengthOfBeginning(const std::vector<OpenElement>& open)
{
    std::size_t length = kLogHeader.size();
    for (const OpenElement& element : open) length += 1 + NameOfParent(element.kind).size() + kTagEnd.size();
    return length;
}

ResumedInput::ResumedInput(LogInput& rest, const ResumePoint& start, std::string_view read, std::optional<int> last,
                           std::size_t block)
    : rest(rest), block(block), last(last), origin(start.origin), text(Beginning(start).append(read))
{}

int ResumedInput::Read(char* out, int length)
{
    const std::size_t left = text.size() - given;
    if (left == 0) return last ? *last : rest.Read(out, length);
    // When the parser reads the file itself, its requests end at multiples of their size in each block; in the first block, the
    // multiples are counted from the end of the first kFirst bytes.
    const std::int64_t at = origin + static_cast<std::int64_t>(given);
    const auto inBlock = static_cast<std::size_t>(at % static_cast<std::int64_t>(block));
    const std::size_t shift = at < static_cast<std::int64_t>(block) ? kFirst : 0;
    const std::size_t toRequest = inBlock < shift ? shift - inBlock : kRequest - (inBlock - shift) % kRequest;
    std::size_t wanted = std::min(block - inBlock, toRequest);
    // The parser would take fewer bytes than a portion as a portion, so give more.
    if (given == kFirst && wanted < kPortion) wanted += std::min(block, kRequest);
    std::size_t count = std::min({left, static_cast<std::size_t>(length), wanted});
    // The parser asks for more before it takes an incomplete portion, and would then have to wait. So give it everything before
    // the last, incomplete portion first; it then takes that portion without asking for more.
    if (rest.Waits() && count == left && given >= kFirst) {
        const std::size_t begun = (given - kFirst) % kPortion;
        const std::size_t beyond = (begun + left) % kPortion;
        if (begun + left > kPortion && beyond < left) count = left - beyond;
    }
    text.copy(out, count, given);
    given += count;
    return static_cast<int>(count);
}

}  // namespace zelt
