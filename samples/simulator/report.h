// The simulator's output: text and tables on standard output, and on request each number's bit pattern, in lines for
// comparing two runs. Nothing in the output depends on where the package runs.
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

    // A table: `columns` once, then rows of one label and one number for each further column. With `bits`, the
    // bit patterns of a row's numbers follow it on a second line. NaN means that a number does not apply.
    void Columns(std::span<const std::wstring> columns);
    void Row(std::wstring_view label, std::span<const double> values);

private:
    bool bits;
};

}  // namespace zelt::sample
