#include "tests/system/harness/log_normaliser.h"

#include <map>
#include <string_view>

namespace zelt::test {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsHexadecimal(char c) { return IsDigit(c) || (c >= 'A' && c <= 'F'); }

std::string NormaliseAddresses(const std::string& log)
{
    std::map<std::string, std::string> names;
    std::string out;
    std::size_t done = 0;
    for (std::size_t at = log.find("0x"); at != std::string::npos; at = log.find("0x", at + 2)) {
        const std::string_view before(log.data(), at);
        if (!before.ends_with("pointer ") && !before.ends_with("address ")) continue;
        std::size_t end = at + 2;
        while (end < log.size() && IsHexadecimal(log[end])) ++end;
        const std::size_t digits = end - at - 2;
        if (digits != 8 && digits != 16) continue;
        std::string& name = names[log.substr(at, end - at)];
        if (name.empty()) name = "0xADDRESS" + std::to_string(names.size());
        out.append(log, done, at - done).append(name);
        done = end;
    }
    return out.append(log, done);
}

// Whether `text` is "<month> dd, yyyy, HH:mm".
bool IsDate(std::string_view text)
{
    constexpr std::string_view kPicture = " 00, 0000, 00:00";
    if (text.size() <= kPicture.size()) return false;
    const std::string_view tail = text.substr(text.size() - kPicture.size());
    for (std::size_t i = 0; i < kPicture.size(); ++i) {
        if (kPicture[i] == '0' ? !IsDigit(tail[i]) : tail[i] != kPicture[i]) return false;
    }
    return true;
}

void NormaliseDate(std::string& log)
{
    constexpr std::string_view kStart = "<info value=\"ZELT Logging started at ";
    const std::size_t found = log.find(kStart);
    if (found == std::string::npos) return;
    const std::size_t start = found + kStart.size();
    const std::size_t end = log.find('"', start);
    if (end == std::string::npos || !IsDate(std::string_view(log).substr(start, end - start))) return;
    log.replace(start, end - start, "DATE");
}

void NormalisePath(std::string& log, const PathName& path)
{
    if (path.path.empty()) return;
    for (std::size_t at = 0; (at = log.find(path.path, at)) != std::string::npos; at += path.name.size()) {
        log.replace(at, path.path.size(), path.name);
    }
}

}  // namespace

std::string NormaliseLog(std::string log, const std::vector<PathName>& paths)
{
    log = NormaliseAddresses(log);
    NormaliseDate(log);
    for (const PathName& path : paths) NormalisePath(log, path);
    return log;
}

}  // namespace zelt::test
