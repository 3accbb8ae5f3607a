#include "tests/system/harness/log_normaliser.h"

#include <algorithm>
#include <map>
#include <string_view>

namespace zelt::test {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsHexadecimal(char c) { return IsDigit(c) || (c >= 'A' && c <= 'F'); }

std::string NormaliseAddresses(const std::string& log, Addresses addresses)
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
        if (name.empty())
            name = addresses == Addresses::Alike ? "0xADDRESS" : "0xADDRESS" + std::to_string(names.size());
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

// Whether the line warns of a query for a system interface. The log shows an interface without a name in the registry as its
// identifier; the identifiers of most interfaces of the standard begin with {678C0.
bool IsSystemQuery(std::string_view line)
{
    constexpr std::string_view kWarning = "<warning value=\"";
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    if (!line.starts_with(kWarning)) return false;
    for (const std::string_view mark :
         {": QueryInterface for unsupported interface ", ": QueryInterface not returning "}) {
        const std::size_t found = line.find(mark);
        if (found == std::string_view::npos) continue;
        const std::string_view name = line.substr(found + mark.size());
        return !name.starts_with("supported interface ") && !name.starts_with("ICape") && !name.starts_with("ECape") &&
               !name.starts_with("{678C0");
    }
    return false;
}

}  // namespace

std::string WithoutSystemQueries(const std::string& log)
{
    std::string rest;
    for (std::size_t start = 0; start < log.size();) {
        const std::size_t end = std::min(log.find('\n', start), log.size() - 1) + 1;
        const std::string_view line(log.data() + start, end - start);
        if (!IsSystemQuery(line)) rest += line;
        start = end;
    }
    return rest;
}

std::string NormaliseLog(std::string log, const std::vector<PathName>& paths, Addresses addresses)
{
    log = NormaliseAddresses(log, addresses);
    NormaliseDate(log);
    for (const PathName& path : paths) NormalisePath(log, path);
    return log;
}

}  // namespace zelt::test
