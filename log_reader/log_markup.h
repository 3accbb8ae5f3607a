// The markup of a log, exactly as it is written.
#pragma once

#include <string_view>

#include "log_reader/log_event.h"

namespace zelt {

inline constexpr std::string_view kLogHeader = "<?xml version=\"1.0\" standalone=\"yes\"?>\r\n<zeltlogdocument>\r\n";

// The name of the element for a kind of event that may have children in logs.
constexpr std::string_view NameOfParent(EventKind kind)
{
    return kind == EventKind::Call ? "func" : kind == EventKind::Argument ? "arg" : "argval";
}

}  // namespace zelt
