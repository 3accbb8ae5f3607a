#include "mutation.h"

#include <iterator>

namespace zelt::test {
namespace {

constexpr const char* kPieces[] = {
    "<",         ">",        "\"",     "&",        "&#0;", "&#x41;", "<!--",          "]]>",
    "<![CDATA[", "</func>",  "<func>", "<error/>", "<?",   "/>",     "<!DOCTYPE a [", "xmlns:a=\"b\" ",
    "a:b",       "\xC3\xA9", "\xFF",   "=",        "''"};

}  // namespace

void Mutate(std::string& log, std::mt19937& random)
{
    for (int change = 1 + static_cast<int>(random() % 8); change > 0 && !log.empty(); --change) {
        const std::size_t at = random() % log.size();
        switch (random() % 5) {
            case 0: log[at] = static_cast<char>(random()); break;
            case 1: log.erase(at, random() % 40); break;
            case 2: log.insert(at, kPieces[random() % std::size(kPieces)]); break;
            case 3: {
                // In separate statements, so that every compiler draws the same numbers.
                const std::size_t from = random() % log.size();
                const std::size_t length = random() % 200;
                log.insert(at, log.substr(from, length));
                break;
            }
            default: log.resize(at + 1); break;
        }
    }
}

}  // namespace zelt::test
