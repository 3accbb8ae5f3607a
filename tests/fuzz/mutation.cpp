#include "mutation.h"

#include <iterator>

namespace zelt::test {
namespace {

constexpr const char* kPieces[] = {
    "<",         ">",        "\"",     "&",        "&#0;", "&#x41;", "<!--",          "]]>",
    "<![CDATA[", "</func>",  "<func>", "<error/>", "<?",   "/>",     "<!DOCTYPE a [", "xmlns:a=\"b\" ",
    "a:b",       "\xC3\xA9", "\xFF",   "=",        "''"};

// The beginning of a line; the log's end counts as one.
std::size_t SomeLine(const std::string& log, std::mt19937& random)
{
    const std::size_t end = log.find('\n', random() % log.size());
    return end == std::string::npos ? log.size() : end + 1;
}

struct Span {
    std::size_t at, length;
};

Span SomeLines(const std::string& log, std::mt19937& random)
{
    const std::size_t from = SomeLine(log, random);
    const std::size_t end = log.find('\n', from + random() % 2000);
    return {from, end == std::string::npos ? std::string::npos : end + 1 - from};
}

// The text between two neighbouring quotation marks; it may be markup.
Span SomeText(const std::string& log, std::mt19937& random)
{
    const std::size_t from = log.find('"', random() % log.size());
    const std::size_t end = from == std::string::npos ? from : log.find('"', from + 1);
    return end == std::string::npos ? Span{0, 0} : Span{from + 1, end - from - 1};
}

}  // namespace

void Rearrange(std::string& log, std::mt19937& random)
{
    for (int change = 1 + static_cast<int>(random() % 8); change > 0 && !log.empty(); --change) {
        // In separate statements, so that every compiler draws the same numbers.
        const unsigned kind = static_cast<unsigned>(random() % 8);
        if (kind == 0) {
            const Span lines = SomeLines(log, random);
            log.erase(lines.at, lines.length);
        } else if (kind < 4) {
            const Span lines = SomeLines(log, random);
            const std::size_t to = random() % 2 ? lines.at : SomeLine(log, random);
            log.insert(to, log.substr(lines.at, lines.length));
        } else if (kind < 7) {
            const Span from = SomeText(log, random);
            const std::string text = log.substr(from.at, from.length);
            const Span to = SomeText(log, random);
            log.replace(to.at, to.length, text);
        } else {
            log.resize(SomeLine(log, random));
        }
    }
}

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
