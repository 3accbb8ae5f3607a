#include "ctl/log/log_aliases.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <random>
#include <set>

#include "ctl/log/call_results.h"
#include "ctl/log/text/log_values.h"
#include "ctl/log/text/names.h"

namespace zelt::ctl {
namespace {

// Words of the standard, in lower case. They stay, because they tell which property was asked for, but not of which substances.
constexpr std::string_view kWords[] = {
    "activity",
    "activitycoefficient",
    "acentricfactor",
    "boilingpointtemperature",
    "bubble",
    "bubblepointpressure",
    "bubblepointtemperature",
    "casregistrynumber",
    "chargenumber",
    "chemicalformula",
    "compressibility",
    "compressibilityfactor",
    "criticalcompressibilityfactor",
    "criticaldensity",
    "criticalpressure",
    "criticaltemperature",
    "criticalvolume",
    "density",
    "dewpointpressure",
    "dewpointtemperature",
    "energy",
    "enthalpy",
    "enthalpyf",
    "enthalpynf",
    "entropy",
    "entropyf",
    "entropynf",
    "excessenthalpy",
    "excessentropy",
    "excessgibbsenergy",
    "flow",
    "fraction",
    "fugacity",
    "fugacitycoefficient",
    "gibbsenergy",
    "heatcapacity",
    "heatcapacitycp",
    "heatcapacitycv",
    "heatofvaporization",
    "heliumcoefficient",
    "helmholtzenergy",
    "idealgasenthalpy",
    "idealgasentropy",
    "idealgasheatcapacity",
    "internalenergy",
    "joulethomsoncoefficient",
    "kvalue",
    "liquid",
    "liquid2",
    "logfugacitycoefficient",
    "logkvalue",
    "mass",
    "meltingpoint",
    "mixture",
    "mole",
    "molecularweight",
    "moles",
    "normalboilingpoint",
    "overall",
    "partialpressure",
    "phasefraction",
    "pressure",
    "pure",
    "pvf",
    "ph",
    "ps",
    "solid",
    "speedofsound",
    "surfacetension",
    "temperature",
    "thermalconductivity",
    "tp",
    "tvf",
    "totalflow",
    "unnormalized",
    "unspecified",
    "normal",
    "retrograde",
    "normalized",
    "vapor",
    "vapour",
    "vaporfraction",
    "vaporpressure",
    "virialcoefficient",
    "viscosity",
    "volume",
    "boltzmannconstant",
    "molargasconstant",
    "avogadroconstant",
    "standardaccelerationofgravity",
};

bool IsWord(std::string_view text)
{
    // "enthalpy.Dtemperature" is a derivative.
    std::string lower(text.substr(0, text.find('.')));
    for (char& c : lower) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    const std::string_view rest = text.substr(std::min(lower.size(), text.size()));
    constexpr std::string_view kDerivatives[] = {"", ".Dtemperature", ".Dpressure", ".Dmoles", ".DmolFraction"};
    static const std::set<std::string_view> words(std::begin(kWords), std::end(kWords));
    return words.count(lower) && IsOneOf(rest, kDerivatives);
}

// Whether the log writes this for something that is neither a text nor a finite number.
bool IsMark(std::string_view value)
{
    // Most values are texts in quotes or numbers.
    if (!value.empty() && (value[0] == '"' || (value[0] >= '0' && value[0] <= '9'))) return false;
    constexpr std::string_view kMarks[] = {"",
                                           "|",
                                           "NULL",
                                           "<NULL>",
                                           "N/A",
                                           "inf",
                                           "-inf",
                                           "TRUE",
                                           "FALSE",
                                           "VARIANT_TRUE",
                                           "VARIANT_FALSE",
                                           "True",
                                           "False",
                                           "<EMPTY STRINGVAL>",
                                           "<unable to format value>",
                                           "<no information>"};
    if (IsOneOf(value, kMarks)) return true;
    const bool isName = std::all_of(value.begin(), value.end(), [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '|';
    });
    return isName && (value.starts_with("CAPE_") || value.starts_with("VT_"));
}

bool IsReal(std::string_view value, std::string_view type)
{
    return std::any_of(value.begin(), value.end(), [](char c) { return c == '.' || c == 'e'; }) ||
           type.find("VT_R") != std::string_view::npos || type == "double";
}

// Whole numbers up to this size keep their order; this includes all numbers of 32 bits.
constexpr long long kLargestWhole = 0xFFFF'FFFF;

// The pseudo-random function SipHash-2-4: keyed, and not reversible without its key.
std::uint64_t SipHash(const std::uint64_t (&key)[2], std::string_view text)
{
    std::uint64_t v0 = key[0] ^ 0x736f6d6570736575, v1 = key[1] ^ 0x646f72616e646f6d, v2 = key[0] ^ 0x6c7967656e657261,
                  v3 = key[1] ^ 0x7465646279746573;
    const auto round = [&] {
        v0 += v1, v1 = std::rotl(v1, 13) ^ v0, v0 = std::rotl(v0, 32);
        v2 += v3, v3 = std::rotl(v3, 16) ^ v2;
        v0 += v3, v3 = std::rotl(v3, 21) ^ v0;
        v2 += v1, v1 = std::rotl(v1, 17) ^ v2, v2 = std::rotl(v2, 32);
    };
    const auto take = [&](std::uint64_t word) {
        v3 ^= word;
        round();
        round();
        v0 ^= word;
    };
    std::size_t at = 0;
    for (; at + 8 <= text.size(); at += 8) {
        std::uint64_t word;
        std::memcpy(&word, text.data() + at, 8);
        take(word);
    }
    std::uint64_t last = static_cast<std::uint64_t>(text.size()) << 56;
    for (std::size_t i = 0; at + i < text.size(); ++i) {
        last |= static_cast<std::uint64_t>(static_cast<unsigned char>(text[at + i])) << (8 * i);
    }
    take(last);
    v2 ^= 0xff;
    for (int i = 0; i < 4; ++i) round();
    return v0 ^ v1 ^ v2 ^ v3;
}

}  // namespace

LogAliases::LogAliases()
{
    std::random_device source;
    for (std::uint64_t& half : key) half = static_cast<std::uint64_t>(source()) << 32 | source();
    for (std::size_t place = 0; place < kMasses; ++place) masses[place] = MassAt(place);
}

std::uint64_t LogAliases::Hash(std::string_view text) const { return SipHash(key, text); }

std::string LogAliases::Text(std::string_view text) const
{
    constexpr std::string_view kStart = "redacted-";
    constexpr int kDigits = 10;
    std::string alias(kStart);
    alias.resize(kStart.size() + kDigits);
    const std::uint64_t hash = Hash(text);
    for (int digit = 0; digit < kDigits; ++digit) {
        alias[kStart.size() + static_cast<std::size_t>(digit)] = "0123456789abcdef"[hash >> (60 - 4 * digit) & 15];
    }
    return alias;
}

std::string LogAliases::Name(std::string_view name) const
{
    return name.empty() || name == "<unknown>" ? std::string(name) : Text(name);
}

std::string LogAliases::Address(std::string_view address) const
{
    if (!address.starts_with("0x")) return Text(address);
    char digits[20];
    std::snprintf(digits, sizeof digits, "%016llX", static_cast<unsigned long long>(Hash(address)));
    return "0x" + std::string(digits, std::min<std::size_t>(address.size() - 2, 16));
}

std::string LogAliases::Bytes(std::string_view bytes) const
{
    std::string alias(bytes.size(), '\0');
    std::uint64_t hash = Hash(bytes);
    for (char& byte : alias) {
        byte = static_cast<char>(hash & 0xFF);
        hash = (hash >> 8) != 0 ? hash >> 8 : Hash(alias);
    }
    return alias;
}

double LogAliases::Weight(std::string_view number) const
{
    return 0.05 + 0.95 * static_cast<double>(Hash(number) >> 11) / 0x1p53;
}

double LogAliases::MassAt(std::size_t place) const { return 0.2 + 0.8 * Weight("mass " + std::to_string(place)); }

std::string LogAliases::Number(std::string_view text, bool real) const
{
    const std::uint64_t hash = Hash(text);
    char alias[32];
    char* end;
    if (real) {
        // Six digits, with a point after the first and without zeros at the end.
        end = std::to_chars(alias + 1, std::end(alias), 100'000 + hash % 900'000).ptr;
        alias[0] = alias[1];
        alias[1] = '.';
        while (end[-1] == '0') --end;
        if (end[-1] == '.') --end;
        *end++ = 'e';
        end = std::to_chars(end, std::end(alias), static_cast<int>(hash / 900'000 % 7) - 3).ptr;
    } else {
        end = std::to_chars(alias, std::end(alias), 1 + hash % 9999).ptr;
    }
    return std::string(text.starts_with('-'), '-').append(alias, end);
}

// A number between 0 and 0.8 that follows from the key and these arguments.
double LogAliases::Jitter(std::uint64_t order, int scale, long long place) const
{
    char text[2 * sizeof(std::uint64_t)];
    const std::uint64_t step = static_cast<std::uint64_t>(place) * 8 + static_cast<std::uint64_t>(scale);
    std::memcpy(text, &order, sizeof order);
    std::memcpy(text + sizeof order, &step, sizeof step);
    return 0.8 * static_cast<double>(Hash({text, sizeof text}) >> 11) / 0x1p53;
}

std::string LogAliases::Ordered(std::string_view text, std::string_view type, std::string_view order) const
{
    const auto number = NumberOf(text);
    if (!number) return Value(text, type);
    if (*number == 0) return std::string(text);
    const std::uint64_t key = Hash(order);
    char alias[40];
    if (!IsReal(text, type)) {
        long long whole = 0;
        std::from_chars(text.data(), text.data() + text.size(), whole);
        const long long step = 2 + static_cast<long long>(key % 50);
        // The alias is less than one step above `step` times the number, so the order stays.
        const long long above = static_cast<long long>(Hash(text) % static_cast<std::uint64_t>(step));
        if (whole < -kLargestWhole || whole > kLargestWhole) return Value(text, type);
        return {alias, std::to_chars(alias, std::end(alias), step * whole + above).ptr};
    }
    // Each scale divides the logarithms into intervals and moves the ends of the intervals, but none past the next. Such maps
    // increase, and so does their mean. The large scales hide ratios, the small ones hide details.
    constexpr double kScales[] = {4, 1, 0.25, 0.0625};
    const double logarithm = std::log2(std::fabs(*number));
    double moved = 4 * Jitter(key, 7, 0);
    for (int scale = 0; scale < 4; ++scale) {
        const double width = kScales[scale], place = std::floor(logarithm / width), part = logarithm / width - place;
        const auto step = static_cast<long long>(place);
        const double from = place + Jitter(key, scale, step), to = place + 1 + Jitter(key, scale, step + 1);
        moved += width * (from + part * (to - from)) / 4;
    }
    moved = std::clamp(moved, -1000.0, 1000.0);
    const double value = std::copysign(std::exp2(moved), *number);
    // More digits than the log has, so that different numbers stay different.
    return {alias, std::to_chars(alias, std::end(alias), value, std::chars_format::general, 8).ptr};
}

std::string LogAliases::Value(std::string_view value, std::string_view type) const
{
    constexpr std::string_view kPointer = "interface pointer ", kObject = "interface to object \"",
                               kAddress = "\" (address ";
    if (IsMark(value)) return std::string(value);
    if (value.starts_with(kPointer)) return std::string(kPointer) + Address(value.substr(kPointer.size()));
    const std::size_t address = value.starts_with(kObject) ? value.rfind(kAddress) : std::string_view::npos;
    if (address != std::string_view::npos && address >= kObject.size() && value.ends_with(')')) {
        const std::string_view name = value.substr(kObject.size(), address - kObject.size());
        const std::string_view digits =
            value.substr(address + kAddress.size(), value.size() - address - kAddress.size() - 1);
        return std::string(kObject) + Name(name) + std::string(kAddress) + Address(digits) + ')';
    }
    if (value.size() >= 2 && value.front() == '"' && value.back() == '"') {
        const std::string_view text = Unquoted(value);
        return '"' + (IsWord(text) ? std::string(text) : Name(text)) + '"';
    }
    double number = 0;
    const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
    if (error != std::errc() || end != value.data() + value.size()) return Text(value);
    return number == 0 ? std::string(value) : Number(value, IsReal(value, type));
}

}  // namespace zelt::ctl
