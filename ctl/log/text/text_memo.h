// Remembers what was made of recurring texts, such as the names and messages of a log. The number of places is fixed: a text
// replaces the one that had its place, so memory does not grow with the log. `Made` is the type of what is made.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace zelt::ctl {

template <class Made>
class Memo {
public:
    // `make(text)` must give the same for the same text. The result is valid until the next call.
    template <class Make>
    const Made& Of(std::string_view text, Make&& make)
    {
        return Of(text, {}, [&] { return make(text); });
    }
    // The same for two texts that recur together.
    template <class Make>
    const Made& Of(std::string_view text, std::string_view other, Make&& make)
    {
        const bool isLong = text.size() + other.size() > kLongest;
        Place& place = places[isLong ? kPlaces : PlaceOf(Hash(Hash(0, text), other))];
        if (!place.isUsed || isLong || place.text != text || place.other != other) {
            place.made = make();
            place.text = text;
            place.other = other;
            place.isUsed = true;
        }
        return place.made;
    }

private:
    static constexpr int kBits = 8;
    static constexpr std::size_t kPlaces = std::size_t{1} << kBits, kLongest = 200;

    static constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15u;

    static std::uint64_t Hash(std::uint64_t hash, std::string_view text)
    {
        constexpr std::size_t kWord = sizeof hash;
        std::uint64_t word = 0;
        hash ^= text.size();
        for (std::size_t at = 0; at + kWord <= text.size(); at += kWord) {
            std::memcpy(&word, text.data() + at, kWord);
            hash = std::rotl((hash ^ word) * kFactor, 32);
        }
        // The last bytes; some of them may be hashed a second time.
        if (text.size() >= kWord) {
            std::memcpy(&word, text.data() + text.size() - kWord, kWord);
        } else {
            text.copy(reinterpret_cast<char*>(&word), text.size());
        }
        return std::rotl((hash ^ word) * kFactor, 32);
    }
    static std::size_t PlaceOf(std::uint64_t hash) { return static_cast<std::size_t>(hash * kFactor >> (64 - kBits)); }

    struct Place {
        std::string text, other;
        Made made = {};
        bool isUsed = false;
    };
    std::array<Place, kPlaces + 1> places;  // the last is for texts that are too long
};

using TextMemo = Memo<std::string>;

}  // namespace zelt::ctl
