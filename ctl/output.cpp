#include "ctl/output.h"

#include <charconv>
#include <iterator>

namespace zelt::ctl {

Output& Output::operator<<(long long number) { return Number(number, 0); }

Output& Output::Number(long long number, std::size_t width)
{
    char text[24];
    const auto end = std::to_chars(text, std::end(text), number).ptr;
    const auto length = static_cast<std::size_t>(end - text);
    if (length < width) Fill(width - length);
    buffer.append(text, end);
    return *this;
}

bool Output::Flush()
{
    if (!stream) return true;
    failed |= std::fwrite(buffer.data(), 1, buffer.size(), stream) != buffer.size();
    flushed += buffer.size();
    buffer.clear();
    failed |= std::fflush(stream) != 0;
    return !failed;
}

}  // namespace zelt::ctl
