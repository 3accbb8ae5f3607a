// The simulator's output: text and tables on standard output, and on request the bit patterns of the numbers in the tables, in
// lines for comparing two runs.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zelt::sample {

class Report {
public:
    explicit Report(bool bits) : bits(bits) {}

    void Heading(std::string_view text);
    void Line(std::wstring_view text);
    // "label: text"
    void Text(const char* label, std::wstring_view text);

    // A table: Columns once, then rows of a label and numbers. With `bits`, the bit patterns of a row's numbers follow it on a
    // second line. NaN means that a number does not apply: it is printed as "-" and has no bit pattern.
    void Columns(std::span<const std::wstring> columns);
    void Row(std::wstring_view label, std::span<const double> values);

private:
    bool bits;
};

}  // namespace zelt::sample
