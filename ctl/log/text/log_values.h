// Numbers and texts as a log has them.
#pragma once

#include <charconv>
#include <cmath>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

namespace zelt::ctl {

// Nothing unless the whole text is one finite number.
inline std::optional<double> NumberOf(std::string_view text)
{
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(number)) return {};
    return number;
}

// With the six digits of a log.
inline std::string Digits(double number)
{
    char text[32];
    return {text, std::to_chars(text, std::end(text), number, std::chars_format::general, 6).ptr};
}

inline std::string Quoted(std::string_view text) { return '"' + std::string(text) + '"'; }

}  // namespace zelt::ctl
