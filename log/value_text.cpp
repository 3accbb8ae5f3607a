#include "log/value_text.h"

#include <oleauto.h>

#include <cmath>
#include <limits>

#include "log/log_text.h"
#include "system/narrow.h"

namespace zelt {

bool IsOldUndefined(double value) { return value == std::numeric_limits<double>::lowest(); }

void AppendDoubleValue(ArgWriter& arg, double value, Sentence oldValueWarning, int level)
{
    if (std::isnan(value)) return arg.Value("N/A", level);
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
