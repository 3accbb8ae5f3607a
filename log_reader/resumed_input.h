// The log from a place in its middle, as a separate document for the parser: a beginning that opens the elements that are open
// at that place, what the scanner has read from there on, and the rest of the input. The parser gets the bytes after that place
// in the same portions as if it had read the file from its beginning, because the portions affect what it reads from a damaged
// file.
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
    // `read` is what the scanner has read from the place on; `last` is the input's final answer, 0 or -1, if it has given one.
    // `block` is the size of the pieces in which the file is read, a multiple of the parser's portions.
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
