// What was made of texts that recur, as names and messages do in a log. It has a fixed number of places; a text replaces another in
// its place, so memory does not grow with the log. `Made` is what is kept of each.
#pragma once

#include <array>
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
        Place& place = places[text.size() <= kLongest ? PlaceOf(text) : kPlaces];
        if (!place.isUsed || text.size() > kLongest || place.text != text) {
            place.made = make(text);
            place.text = text;
            place.isUsed = true;
        }
        return place.made;
    }

private:
    static constexpr std::size_t kPlaces = 256, kLongest = 200;

    // Of the length, the first bytes, in which sentences differ, and the last ones, in which names of one origin do.
    static std::size_t PlaceOf(std::string_view text)
    {
        constexpr std::size_t kBytes = sizeof(std::uint64_t);
        std::uint64_t first = 0, last = 0;
        if (text.size() >= kBytes) {
            std::memcpy(&first, text.data(), kBytes);
            std::memcpy(&last, text.data() + (text.size() - kBytes), kBytes);
        } else {
            text.copy(reinterpret_cast<char*>(&first), text.size());
        }
        constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15u;
        return static_cast<std::size_t>((first * kFactor + last + text.size()) * kFactor >> 56);
    }

    struct Place {
        std::string text;
        Made made = {};
        bool isUsed = false;
    };
    std::array<Place, kPlaces + 1> places;  // the last is for texts that are too long
};

using TextMemo = Memo<std::string>;

}  // namespace zelt::ctl
