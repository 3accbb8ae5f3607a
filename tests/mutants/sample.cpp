// The source that the test gives to the generator; no program contains it. It has a place for each kind of change.
#include <cstddef>
#define NOT_CHANGED(x) ((x) < 1)

namespace sample {
namespace {

enum class Kind { First = 1, Second = 2 };

constexpr int kLimit = 64;
constexpr const char* kNames[] = {"first", "second"};
constexpr Table kTables[] = {{Kind::First, kLimit}, {Kind::Second, 3}};
static_assert(kLimit > 10, "the compiler's business");

}  // namespace

template <int Size = 4>
bool Use(int value, char (&text)[Size])
{
    char buffer[16];
    if (value < kLimit) return true;
    if (const int twice = 2 * value) Store(text, twice);  // a comment < with > operators
    while (value > 0 && text[0] != 'x') --value;
    const int sign = value == 0 ? 0 : Sign(value, buffer);
    switch (sign) {
        case 1: Log("one\n"); break;
        default: return false;
    }
    Each([&](int index) { values[index] = 1e-6; });
    Call(E_FAIL,  // an argument a line
         Kind::First);
    Close(std::max(value, sign));
    const std::vector<std::map<int, int>> lists(E_POINTER);
    Guard<int> guard(lists);
    for (const auto& table : kTables) Note(kNames[table.second]);
    return value << 1 >= 8;
}

// Tables whose order of rows has no visible effect, and one whose order has.
constexpr std::string_view kWords[] = {"a", "b"};
constexpr std::string_view kMarks[] = {"c", "d"};
constexpr std::string_view kNumbers[] = {"1", "2"};
constexpr std::string_view kPlaces[] = {"e", "f"};

bool IsKnown(std::string_view text)
{
    static const std::set<std::string_view> words(std::begin(kWords), std::end(kWords));
    const auto place = std::find(std::begin(kPlaces), std::end(kPlaces), text);
    return words.count(text) || std::find(std::begin(kMarks), std::end(kMarks), text) != std::end(kMarks) ||
           IsOneOf(text, kNumbers) || place == std::begin(kPlaces);
}

}  // namespace sample
