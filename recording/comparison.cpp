#include "recording/comparison.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

namespace zelt::recording {
namespace {

constexpr std::size_t kMostShown = 4;
constexpr std::size_t kLongestText = 40;
// VARTYPEs of array elements.
constexpr std::uint16_t kFloat = 4, kReal = 5, kDate = 7;

template <class T>
std::string NumberText(T number)
{
    char digits[32];
    return {digits, std::to_chars(digits, digits + sizeof digits, number).ptr};
}

template <class T>
T NumberAt(std::string_view bytes, std::size_t index)
{
    T number;
    std::memcpy(&number, bytes.data() + index * sizeof number, sizeof number);
    return number;
}

std::string Shortened(std::string_view whole)
{
    std::string text = "\"";
    if (whole.size() <= kLongestText) {
        text += whole;
    } else {
        // Do not cut in the middle of a character.
        std::size_t length = kLongestText;
        while (length > 0 && (static_cast<unsigned char>(whole[length]) & 0xC0) == 0x80) --length;
        text.append(whole.substr(0, length)).append("...");
    }
    text += '"';
    return text;
}

bool HoldsReals(const ArrayValue& array)
{
    const std::uint16_t type = array.elementType.value_or(0);
    return (array.elementSize == sizeof(double) && (type == kReal || type == kDate)) ||
           (array.elementSize == sizeof(float) && type == kFloat);
}

// The array must hold reals.
double RealAt(const ArrayValue& array, std::size_t index)
{
    return array.elementSize == sizeof(float) ? NumberAt<float>(array.numbers, index)
                                              : NumberAt<double>(array.numbers, index);
}

std::size_t CountElements(const ArrayValue& array)
{
    if (!array.elements.empty()) return array.elements.size();
    return array.elementSize == 0 ? 0 : array.numbers.size() / array.elementSize;
}

std::string ElementText(const ArrayValue& array, std::size_t index)
{
    if (!array.elements.empty()) return Summary(array.elements[index]);
    // A float is shown with the digits that a float needs; as a double, it would show more.
    if (HoldsReals(array) && array.elementSize == sizeof(float))
        return NumberText(NumberAt<float>(array.numbers, index));
    if (HoldsReals(array)) return NumberText(RealAt(array, index));
    switch (array.elementSize) {
        case 1: return NumberText(int{NumberAt<std::uint8_t>(array.numbers, index)});
        case 2: return NumberText(NumberAt<std::int16_t>(array.numbers, index));
        case 4: return NumberText(NumberAt<std::int32_t>(array.numbers, index));
        case 8: return NumberText(NumberAt<std::int64_t>(array.numbers, index));
        default: return "?";
    }
}

std::string ArrayText(const ArrayValue& array)
{
    if (array.bounds.empty()) return "no array";
    const std::size_t count = CountElements(array);
    std::string text = "[";
    for (std::size_t i = 0; i < std::min(count, kMostShown); ++i) {
        if (i > 0) text += ' ';
        text += ElementText(array, i);
    }
    if (count > kMostShown) text.append(" ... of ").append(std::to_string(count));
    text += ']';
    return text;
}

std::string InsteadOf(const std::string& recorded, const std::string& actual)
{
    return actual + " instead of " + recorded;
}

bool AreEqual(double recorded, double actual, double tolerance)
{
    if (std::memcmp(&recorded, &actual, sizeof recorded) == 0) return true;
    // Infinities and NaNs equal only the same bits, whatever the tolerance.
    return tolerance > 0 && std::isfinite(recorded) && std::isfinite(actual) &&
           std::abs(recorded - actual) <= tolerance * std::max(std::abs(recorded), std::abs(actual));
}

std::optional<std::string> InElement(std::size_t index, std::optional<std::string> difference)
{
    if (!difference) return {};
    std::string text = "[";
    text.append(std::to_string(index)).append("]: ").append(*difference);
    return text;
}

std::optional<std::string> DifferenceOfArrays(const ArrayValue& recorded, const ArrayValue& actual, double tolerance)
{
    const auto sameBound = [](const Bound& a, const Bound& b) { return a.lower == b.lower && a.count == b.count; };
    const std::size_t count = CountElements(recorded);
    if (recorded.bounds.size() != actual.bounds.size() || count != CountElements(actual)) {
        return InsteadOf(ArrayText(recorded), ArrayText(actual));
    }
    if (!std::equal(recorded.bounds.begin(), recorded.bounds.end(), actual.bounds.begin(), sameBound)) {
        return "other bounds";
    }
    const bool haveTypes = recorded.elementType && actual.elementType;
    if (recorded.elementSize != actual.elementSize || (haveTypes && recorded.elementType != actual.elementType) ||
        recorded.elements.empty() != actual.elements.empty()) {
        return "elements of another type";
    }
    for (std::size_t i = 0; i < recorded.elements.size(); ++i) {
        if (auto difference = InElement(i, Difference(recorded.elements[i], actual.elements[i], tolerance))) {
            return difference;
        }
    }
    if (recorded.numbers == actual.numbers) return {};
    // An array has elements or numbers; one with both is damaged.
    if (!recorded.elements.empty() || recorded.numbers.size() != actual.numbers.size())
        return "elements of another type";
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t size = recorded.elementSize;
        const bool isEqual = HoldsReals(recorded)
                                 ? AreEqual(RealAt(recorded, i), RealAt(actual, i), tolerance)
                                 : recorded.numbers.substr(i * size, size) == actual.numbers.substr(i * size, size);
        if (!isEqual) return InElement(i, InsteadOf(ElementText(recorded, i), ElementText(actual, i)));
    }
    return {};
}

}  // namespace

std::string Summary(const Value& value)
{
    switch (value.form) {
        case Value::Form::None: return "none";
        case Value::Form::Integer: return NumberText(value.integer);
        case Value::Form::Real: return NumberText(value.real);
        case Value::Form::Text: return Shortened(value.bytes);
        case Value::Form::RawText:
        case Value::Form::Raw:
            return std::to_string(value.bytes.size()) + (value.bytes.size() == 1 ? " byte" : " bytes");
        case Value::Form::Pointer: return "object";
        case Value::Form::Array: return ArrayText(value.array.front());
        case Value::Form::Variant: return Summary(value.inner.front());
    }
    return {};
}

std::optional<std::string> Difference(const Value& recorded, const Value& actual, double tolerance)
{
    if (recorded.form != actual.form) return InsteadOf(Summary(recorded), Summary(actual));
    if (recorded.type != actual.type) {
        return Summary(actual) + " of another type: " + std::to_string(actual.type) + " instead of " +
               std::to_string(recorded.type);
    }
    bool isEqual = true;
    switch (recorded.form) {
        case Value::Form::None:
        case Value::Form::Pointer: break;
        case Value::Form::Integer: isEqual = recorded.integer == actual.integer; break;
        case Value::Form::Real: isEqual = AreEqual(recorded.real, actual.real, tolerance); break;
        case Value::Form::Text:
        case Value::Form::RawText:
        case Value::Form::Raw:
            if (recorded.bytes == actual.bytes) return {};
            if (recorded.form != Value::Form::Text) return "other bytes";
            isEqual = false;
            break;
        case Value::Form::Array: return DifferenceOfArrays(recorded.array.front(), actual.array.front(), tolerance);
        case Value::Form::Variant: return Difference(recorded.inner.front(), actual.inner.front(), tolerance);
    }
    if (isEqual) return {};
    return InsteadOf(Summary(recorded), Summary(actual));
}

}  // namespace zelt::recording
