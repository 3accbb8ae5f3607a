#include "bench/viewer/written_log.h"

#include <cctype>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>

namespace zelt::bench {
namespace {

struct Parts {
    std::string header, entries, footer;
};

Parts GoldenLog()
{
    std::ifstream file(ZELT_GOLDEN_LOG, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    const std::string log = text.str();
    const std::size_t root = log.find("<zeltlogdocument>");
    const std::size_t end = log.rfind("</zeltlogdocument>");
    if (root == std::string::npos || end == std::string::npos) throw std::runtime_error("the golden log is missing");
    const std::size_t first = log.find('\n', root) + 1;
    return {log.substr(0, first), log.substr(first, end - first), log.substr(end)};
}

// Digits after a decimal point differ from one iteration of a simulation to the next; counts and limits do not.
void ChangeNumbers(std::string& entries, std::minstd_rand& random)
{
    for (std::size_t point = entries.find('.'); point != std::string::npos; point = entries.find('.', point + 1)) {
        if (point == 0 || !std::isdigit(static_cast<unsigned char>(entries[point - 1]))) continue;
        for (std::size_t digit = point + 1; std::isdigit(static_cast<unsigned char>(entries[digit])); ++digit) {
            entries[digit] = static_cast<char>('0' + random() % 10);
        }
    }
}

// As many entries as a window shows.
std::string FirstPage()
{
    std::string page;
    for (int i = 0; i < 60; ++i) {
        page += "<func name=\"ICapeThermoMaterial::GetSinglePhaseProp\" direc=\"in\" object=\"Feed\"/>\r\n";
    }
    for (int i = 0; i < 15; ++i) page += "<warning value=\"The object is not released at its final release\"/>\r\n";
    return page;
}

}  // namespace

WrittenLog::WrittenLog(long long bytes, bool blanks)
{
    const std::filesystem::path place =
        std::filesystem::temp_directory_path() / ("bench " + std::to_string(std::random_device()()) + ".zlg");
    path = place.wstring();
    Parts parts = GoldenLog();
    if (blanks) parts.entries = FirstPage() + std::string(static_cast<std::size_t>(bytes), ' ');
    std::ofstream file(place, std::ios::binary);
    if (!file) throw std::runtime_error("the log cannot be written");
    std::minstd_rand random(1);
    file << parts.header;
    const std::size_t frame = parts.header.size() + parts.footer.size();
    auto written = static_cast<long long>(frame);
    // The last repetition writes only as many whole entries as are still needed.
    while (file && written < bytes) {
        ChangeNumbers(parts.entries, random);
        std::size_t length = parts.entries.size();
        if (static_cast<long long>(length) > bytes - written) {
            const std::size_t wanted = parts.entries.find("\n</func>\r\n", static_cast<std::size_t>(bytes - written));
            if (wanted != std::string::npos) length = wanted + 10;
        }
        file.write(parts.entries.data(), static_cast<std::streamsize>(length));
        written += static_cast<long long>(length);
    }
    file << parts.footer;
    file.close();
    if (!file) {
        std::filesystem::remove(place);
        throw std::runtime_error("writing failed");
    }
    megabytes = static_cast<double>(written) / 1e6;
}

WrittenLog::~WrittenLog()
{
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
}

}  // namespace zelt::bench
