// What was made of texts that recur, as names and messages do in a log. It has a fixed number of places; a text replaces another in
// its place, so memory does not grow with the log.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace zelt::ctl {

class TextMemo {
public:
    // `make(text)` must give the same for the same text. The result is valid until the next call.
    template <class Make>
    const std::string& Of(std::string_view text, Make&& make)
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

    // Of the length and the last bytes, in which names of one origin differ.
    static std::size_t PlaceOf(std::string_view text)
    {
        std::uint64_t word = 0;
        const std::size_t count = text.size() < sizeof word ? text.size() : sizeof word;
        std::memcpy(&word, text.data() + (text.size() - count), count);
        return static_cast<std::size_t>((word + text.size()) * 0x9E3779B97F4A7C15u >> 56);
    }

    struct Place {
        std::string text, made;
        bool isUsed = false;
    };
    std::array<Place, kPlaces + 1> places;  // the last is for texts that are too long
};

}  // namespace zelt::ctl
