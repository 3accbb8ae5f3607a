#include "log_reader/resumed_input.h"

#include <algorithm>

#include "log_reader/log_markup.h"

namespace zelt {
namespace {

// The parser takes the first bytes to recognise the encoding, and then portions of this size.
constexpr std::size_t kFirst = 4, kPortion = 512;

// Ends where the place's line begins. Blanks inside the root's tag fill it up to a number of whole blocks before the block that
// contains the place.
std::string Beginning(const ResumePoint& start, std::size_t block)
{
    if (start.offset == 0) return {};
    constexpr std::string_view kRootEnd = ">\r\n";
    std::string text(kLogHeader);
    text.resize(text.size() - kRootEnd.size());
    std::string tags(kRootEnd);
    for (const OpenElement& element : start.open) tags.append("<").append(NameOfParent(element.kind)).append(kRootEnd);
    const std::size_t needed = text.size() + tags.size();
    const auto inBlock = static_cast<std::size_t>(start.offset % static_cast<std::int64_t>(block));
    const std::size_t length = inBlock + (needed + block - 1) / block * block;
    return text.append(length - needed, ' ') + tags;
}

}  // namespace

ResumedInput::ResumedInput(LogInput& rest, const ResumePoint& start, std::string_view read, std::optional<int> last,
                           std::size_t block)
    : rest(rest), block(block), last(last), text(Beginning(start, block).append(read))
{}

int ResumedInput::Read(char* out, int length)
{
    const std::size_t left = text.size() - given;
    if (left == 0) return last ? *last : rest.Read(out, length);
    std::size_t count = std::min({left, static_cast<std::size_t>(length), block - given % block});
    // The parser asks for more before it takes the beginning of a portion, and would have to wait. So what precedes the last portion
    // comes first, and then the parser takes that one as it is.
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
