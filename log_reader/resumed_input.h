// The log from a place in its middle, as a separate document for the parser: a beginning that opens the elements that are open
// at that place, what the scanner has read from there on, and the rest of the input. The parser gets the bytes from that place
// on in the same portions as it would have from the file's beginning, because what it reads from a damaged file depends on
// these.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "log_reader/log_reader.h"
#include "log_reader/resume_point.h"

namespace zelt {

// The length of a beginning that opens the root and these elements.
std::size_t LengthOfBeginning(const std::vector<OpenElement>& open);

class ResumedInput final : public LogInput {
public:
    // `read` is what was read from the place on; `last` what the input returned when it gave nothing more, if it did. `block` is
    // the size of the pieces in which the file is read, a multiple of the parser's portions.
    ResumedInput(LogInput& rest, const ResumePoint& start, std::string_view read, std::optional<int> last,
                 std::size_t block);

    int Read(char* out, int length) override;

private:
    LogInput& rest;
    const std::size_t block;
    const std::optional<int> last;
    const std::int64_t origin;
    std::string text;
    std::size_t given = 0;
};

}  // namespace zelt
