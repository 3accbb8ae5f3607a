#include "log_reader/log_event.h"

#include <cstring>

namespace zelt {
namespace {

// Where the last two colons are. Methods have short names, so a search from the end is over soon.
std::size_t LastColons(std::string_view name)
{
    for (std::size_t next = name.size(); next > 1; --next) {
        if (std::memcmp(name.data() + next - 2, "::", 2) == 0) return next - 2;
    }
    return std::string_view::npos;
}

}  // namespace

std::string_view LogEvent::Interface() const
{
    const std::size_t colons = LastColons(name);
    return colons == std::string_view::npos ? std::string_view() : name.substr(0, colons);
}

std::string_view LogEvent::Method() const
{
    const std::size_t colons = LastColons(name);
    return colons == std::string_view::npos ? name : name.substr(colons + 2);
}

}  // namespace zelt
