// The image of each kind of event in the viewer's tree.
#pragma once

#include "log_reader/log_event.h"
#include "shell/small_images.h"

namespace zelt {

constexpr SmallImage ImageOf(const LogEvent& event)
{
    switch (event.kind) {
        case EventKind::Call: return event.inward ? kImageCallIn : kImageCallOut;
        case EventKind::Argument: return event.inward ? kImageArgumentIn : kImageArgumentOut;
        case EventKind::Info: return kImageInfo;
        case EventKind::Warning: return kImageWarning;
        case EventKind::Error: return kImageError;
        case EventKind::Value:
        case EventKind::Other: break;
    }
    return kImageValue;
}

}  // namespace zelt
