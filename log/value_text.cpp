#include "log/value_text.h"

#include <oleauto.h>

#include <bit>
#include <cstdint>
#include <limits>

#include "log/log_text.h"
#include "system/narrow.h"

namespace zelt {

namespace {

// Unlike std::isnan, raises no floating-point exception for a signaling NaN: a component may have unmasked these exceptions.
bool IsNan(double value)
{
    constexpr auto kInfinity = std::bit_cast<std::uint64_t>(std::numeric_limits<double>::infinity());
    return (std::bit_cast<std::uint64_t>(value) & INT64_MAX) > kInfinity;
}

}  // namespace

bool IsOldUndefined(double value) { return value == std::numeric_limits<double>::lowest(); }

void AppendDoubleValue(ArgWriter& arg, double value, Sentence oldValueWarning, int level)
{
    if (IsNan(value)) return arg.Value("N/A", level);
    if (IsOldUndefined(value)) {
        arg.Value("N/A", level);
        return arg.Say(oldValueWarning, level);
    }
    arg.ShortValue([value](char* text) { return WriteDouble(text, value); }, level);
}

void AppendStringValue(ArgWriter& arg, BSTR value, const char* nullText, int level, int errorLevel)
{
    if (!value) return arg.EscapedValue(nullText, nullptr, level);
    const std::wstring_view text = TextOf(value);
    if (!arg.ShortValue([text](char* out) { return WriteQuoted(out, text); }, level)) {
        std::string quoted = "\"";
        AppendNarrow(quoted, text);
        quoted += '"';
        arg.EscapedValue(quoted, "string value", level);
    }
    if (SysStringByteLen(value) != text.size() * sizeof(wchar_t)) arg.Say(Sentence::WrongString, errorLevel);
}

}  // namespace zelt
