#include "samples/simulator/report.h"

#include <windows.h>

#include <bit>
#include <cinttypes>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace zelt::sample {
namespace {

std::string Utf8(std::wstring_view text)
{
    if (text.empty()) return {};
    const int length = static_cast<int>(text.size());
    const int needed = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<std::size_t>(needed > 0 ? needed : 0), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length, narrow.data(), needed, nullptr, nullptr);
    return narrow;
}

}  // namespace

void Report::Heading(std::string_view text) { std::printf("\n%.*s\n", static_cast<int>(text.size()), text.data()); }

void Report::Line(std::wstring_view text) { std::printf("  %s\n", Utf8(text).c_str()); }

void Report::Text(const char* label, std::wstring_view text) { std::printf("%s: %s\n", label, Utf8(text).c_str()); }

void Report::Columns(std::span<const std::wstring> columns)
{
    bool first = true;
    for (const std::wstring& column : columns) {
        std::printf(first ? "  %-40s" : " %14s", Utf8(column).c_str());
        first = false;
    }
    std::printf("\n");
}

void Report::Row(std::wstring_view label, std::span<const double> values)
{
    const std::string name = Utf8(label);
    std::printf("  %-40s", name.c_str());
    for (const double value : values) {
        if (std::isnan(value))
            std::printf(" %14s", "-");
        else
            std::printf(" %14.8g", value);
    }
    std::printf("\n");
    if (!bits) return;
    std::printf("bits %s", name.c_str());
    for (const double value : values) {
        if (!std::isnan(value)) std::printf(" %016" PRIX64, std::bit_cast<std::uint64_t>(value));
    }
    std::printf("\n");
}

}  // namespace zelt::sample
