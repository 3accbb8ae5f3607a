// The effort of tests of variable length: little in an ordinary run, and ZELT_TEST_EFFORT times as much in a long run.
// The same seed gives the same inputs on every machine.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <random>

namespace zelt::test {

// The factor by which a long run exceeds an ordinary one.
inline int Effort()
{
    const char* text = std::getenv("ZELT_TEST_EFFORT");
    const int factor = text ? std::atoi(text) : 0;
    return factor > 1 ? factor : 1;
}

// Reproducible inputs. C++ specifies mt19937 exactly, but not the library's distributions.
class Dice {
public:
    explicit Dice(std::uint32_t seed) : engine(seed) {}
    std::uint32_t Any() { return static_cast<std::uint32_t>(engine()); }
    // 0 to count - 1.
    std::uint32_t Below(std::uint32_t count) { return static_cast<std::uint32_t>(std::uint64_t{Any()} * count >> 32); }
    bool Once(std::uint32_t in) { return Below(in) == 0; }
    template <class T, std::size_t N>
    const T& Of(const T (&list)[N])
    {
        return list[Below(N)];
    }

private:
    std::mt19937 engine;
};

}  // namespace zelt::test
