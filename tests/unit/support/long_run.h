// How much the tests do that go on for as long as one likes: little in an ordinary run, what ZELT_TEST_EFFORT says in a long
// one. The same seed gives the same inputs on every machine, and a failure names it.
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

// Reproducible inputs. mt19937 is specified to the bit, the library's distributions are not.
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
