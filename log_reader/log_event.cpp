#include "log_reader/log_event.h"

namespace zelt {

std::string_view LogEvent::Interface() const
{
    const std::size_t colons = name.rfind("::");
    return colons == std::string_view::npos ? std::string_view() : name.substr(0, colons);
}

std::string_view LogEvent::Method() const
{
    const std::size_t colons = name.rfind("::");
    return colons == std::string_view::npos ? name : name.substr(colons + 2);
}

}  // namespace zelt
