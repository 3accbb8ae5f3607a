#include "ctl/recording/redaction/value_redaction.h"

#include <charconv>
#include <cstdio>

#include "ctl/log/redaction/fraction_redaction.h"
#include "ctl/log/redaction/standard_name.h"

namespace zelt::ctl {

using namespace recording;

namespace {

constexpr std::string_view kQuote = "&quot;";

// A compound's name without the quotes around it, which are escaped as in the markup of logs.
std::string_view WithoutQuotes(std::string_view name)
{
    return name.substr(kQuote.size(), name.size() - 2 * kQuote.size());
}

// Leaves the scalar unchanged when the text is not a number, such as the "N/A" of a missing number.
void PutNumber(Scalar& scalar, const std::string& text)
{
    const char *const begin = text.data(), *const end = begin + text.size();
    if (scalar.form == Value::Form::Real) {
        double number = 0;
        if (std::from_chars(begin, end, number).ptr == end && end != begin) scalar.real = number;
    } else {
        std::int64_t number = 0;
        if (std::from_chars(begin, end, number).ptr == end && end != begin) scalar.integer = number;
    }
}

// Whether the number stands for a word, such as "true" or a name in an enumeration of the standard.
bool IsStandard(const ArgumentRecord& argument, const Scalar& scalar)
{
    constexpr std::uint16_t kBool = 11;
    switch (argument.kind) {
        case ArgumentKind::Bool:
        case ArgumentKind::VariantBool:
        case ArgumentKind::Flags:
        case ArgumentKind::Enumeration: return true;
        default: return scalar.type == kBool;
    }
}

}  // namespace

std::uint64_t ValueRedaction::Address(std::uint64_t address) const
{
    if (address == 0) return 0;
    char text[24];
    std::snprintf(text, sizeof text, "0x%0*llX", static_cast<int>(digits), static_cast<unsigned long long>(address));
    const std::string alias = aliases.Address(text);
    std::uint64_t number = 0;
    std::from_chars(alias.data() + 2, alias.data() + alias.size(), number, 16);
    return number;
}

ArgumentRecord ValueRedaction::Redact(const ArgumentRecord& argument, const ArgumentMeanings& meanings,
                                      std::deque<std::string>& texts)
{
    const auto named = [&](std::string_view name) {
        return IsStandardName(name) ? std::string_view(texts.emplace_back(name))
                                    : std::string_view(texts.emplace_back(aliases.Text(name)));
    };
    place = 0;
    fractions.clear();
    if (meanings.Meaning() == ArgumentMeaning::Fractions) {
        ForEachScalar(argument.value, [&](const Scalar& scalar) {
            if (fractions.size() < kMostFractions) fractions.push_back(ScalarText(argument, scalar));
        });
        fractions = RedactFractions(fractions, meanings.AreAll(), aliases);
    }
    ArgumentRecord redacted;
    redacted.name = named(argument.name);
    redacted.kind = argument.kind;
    redacted.isOut = argument.isOut;
    redacted.value = MapScalars(
        argument.value, [&](const Scalar& scalar) { return Redacted(argument, scalar, meanings, texts); }, texts);
    if (argument.type.data()) redacted.type = named(argument.type);
    if (argument.kind == ArgumentKind::NamedInterface) {
        redacted.shown = texts.emplace_back(aliases.Name(argument.shown));
    } else if (argument.shown.data()) {
        redacted.shown = texts.emplace_back(aliases.Value(argument.shown, {}));
    }
    redacted.expected = argument.expected;
    redacted.mayBeEmpty = argument.mayBeEmpty;
    return redacted;
}

Scalar ValueRedaction::Redacted(const ArgumentRecord& argument, const Scalar& scalar, const ArgumentMeanings& meanings,
                                std::deque<std::string>& texts)
{
    Scalar redacted = scalar;
    const std::size_t index = place++;
    // `balanced` gives the substitutes in the order of the recording, so each such value takes one, even if it is not a number.
    const std::string balance = meanings.AreHeld() ? balanced.Next() : std::string();
    switch (scalar.form) {
        case Value::Form::Pointer: redacted.address = Address(scalar.address); break;
        case Value::Form::Text: return RedactedText(scalar, meanings.Meaning(), texts);
        case Value::Form::RawText:
            redacted.form = Value::Form::Text;
            redacted.bytes = texts.emplace_back(aliases.Text(scalar.bytes));
            break;
        case Value::Form::Raw: redacted.bytes = texts.emplace_back(aliases.Bytes(scalar.bytes)); break;
        case Value::Form::Integer:
        case Value::Form::Real:
            if (IsStandard(argument, scalar)) break;
            if (meanings.AreHeld()) {
                PutNumber(redacted, balance);
            } else if (index < fractions.size()) {
                PutNumber(redacted, fractions[index]);
            } else {
                PutNumber(redacted, RedactedNumber(ScalarText(argument, scalar), TypeText(argument), meanings));
            }
            break;
        default: break;
    }
    return redacted;
}

Scalar ValueRedaction::RedactedText(const Scalar& scalar, ArgumentMeaning meaning, std::deque<std::string>& texts)
{
    Scalar redacted = scalar;
    if (meaning == ArgumentMeaning::ErrorText && keepsErrors) return redacted;
    const std::string quoted = '"' + std::string(scalar.bytes) + '"';
    if (meaning == ArgumentMeaning::Compounds) {
        redacted.bytes = texts.emplace_back(WithoutQuotes(compounds.NameOf(quoted, aliases)));
    } else {
        const std::string alias = aliases.Value(quoted, {});
        redacted.bytes = texts.emplace_back(alias.substr(1, alias.size() - 2));
    }
    return redacted;
}

std::string ValueRedaction::RedactedNumber(const std::string& text, const std::string& type,
                                           const ArgumentMeanings& meanings)
{
    switch (meanings.Meaning()) {
        case ArgumentMeaning::Count: return text;
        case ArgumentMeaning::Ordered: return aliases.Ordered(text, type, meanings.Order());
        case ArgumentMeaning::Flows:
            if (meanings.AreAll()) return RedactFlow(text, place - 1, aliases);
            break;
        default: break;
    }
    return aliases.Value(text, type);
}

}  // namespace zelt::ctl
