// The strip of small images (bitmap 202), named by their meanings.
#pragma once

namespace zelt {

// clang-format off
enum SmallImage : int {
    kImageGroup           = 0,
    kImagePropertyPackage = 1,
    kImageInfo            = 2,
    kImageError           = 3,
    kImageCallIn          = 4,
    kImageCallOut         = 5,
    kImageArgumentIn      = 6,
    kImageArgumentOut     = 7,
    kImageValue           = 8,
    kImagePropertyManager = 9,
    kImageWarning         = 10,
    kImageReactionManager = 11,
    kImageReactionPackage = 12,
};
// clang-format on

}  // namespace zelt
