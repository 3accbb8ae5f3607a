#include "ctl/recording/value_summary.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>

namespace zelt::ctl {
namespace {

using namespace recording;

constexpr std::size_t kMostShown = 4;
constexpr std::size_t kLongestText = 40;

template <class T>
void AppendNumber(std::string& text, T number)
{
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    text.append(digits, end);
}

void AppendShortened(std::string& text, std::string_view whole)
{
    text += '"';
    if (whole.size() <= kLongestText) {
        text += whole;
    } else {
        // Not in the middle of a character.
        std::size_t length = kLongestText;
        while (length > 0 && (static_cast<unsigned char>(whole[length]) & 0xC0) == 0x80) --length;
        text.append(whole.substr(0, length)).append("...");
    }
    text += '"';
}

template <class T>
T NumberAt(std::string_view bytes, std::size_t index)
{
    T number;
    std::memcpy(&number, bytes.data() + index * sizeof number, sizeof number);
    return number;
}

void AppendNumberOf(std::string& text, const ArrayValue& array, std::size_t index)
{
    constexpr std::uint16_t kReal = 5;
    const bool isReal = array.elementType.value_or(0) == kReal;
    switch (array.elementSize) {
        case 2: return AppendNumber(text, NumberAt<std::int16_t>(array.numbers, index));
        case 4: return AppendNumber(text, NumberAt<std::int32_t>(array.numbers, index));
        case 8:
            return isReal ? AppendNumber(text, NumberAt<double>(array.numbers, index))
                          : AppendNumber(text, NumberAt<std::int64_t>(array.numbers, index));
        default: text += '?';
    }
}

void AppendValue(std::string& text, const Value& value);

void AppendArray(std::string& text, const ArrayValue& array)
{
    const std::size_t numbers = array.elementSize ? array.numbers.size() / array.elementSize : 0;
    const std::size_t count = array.elements.empty() ? numbers : array.elements.size();
    text += '[';
    for (std::size_t i = 0; i < std::min(count, kMostShown); ++i) {
        if (i > 0) text += ' ';
        if (array.elements.empty()) {
            AppendNumberOf(text, array, i);
        } else {
            AppendValue(text, array.elements[i]);
        }
    }
    if (count > kMostShown) text.append(" ... of ").append(std::to_string(count));
    text += ']';
}

void AppendValue(std::string& text, const Value& value)
{
    switch (value.form) {
        case Value::Form::None: text += "none"; break;
        case Value::Form::Integer: AppendNumber(text, value.integer); break;
        case Value::Form::Real: AppendNumber(text, value.real); break;
        case Value::Form::Text: AppendShortened(text, value.bytes); break;
        case Value::Form::RawText:
        case Value::Form::Raw: text += '?'; break;
        case Value::Form::Pointer: text += "object"; break;
        case Value::Form::Array: AppendArray(text, value.array.front()); break;
    }
}

}  // namespace

void AppendSummary(std::string& text, const ArgumentRecord& argument)
{
    if (!text.empty()) text += ", ";
    text.append(argument.name).append("=");
    if (!argument.shown.empty()) {
        text += argument.shown;
    } else {
        AppendValue(text, argument.value);
    }
}

}  // namespace zelt::ctl
