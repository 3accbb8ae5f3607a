// The rows of a recording's table of texts. Texts that were looked up lately are found without the table's hash. Not thread safe.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace zelt::recording {

class TextRows {
public:
    std::optional<std::uint32_t> Find(std::string_view text)
    {
        const Entry*& last = recent[PlaceOf(text)];
        if (last && last->first == text) return last->second;
        const auto found = rows.find(text);
        if (found == rows.end()) return std::nullopt;
        last = &*found;
        return found->second;
    }
    void Add(std::string_view text, std::uint32_t row) { rows.emplace(text, row); }

private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
    };
    using Rows = std::unordered_map<std::string, std::uint32_t, Hash, std::equal_to<>>;
    using Entry = Rows::value_type;

    static constexpr std::size_t kRecent = 256;

    // Names of members mostly differ in their last characters.
    static std::size_t PlaceOf(std::string_view text);

    Rows rows;
    std::array<const Entry*, kRecent> recent = {};
};

}  // namespace zelt::recording
