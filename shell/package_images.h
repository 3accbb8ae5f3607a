// The images of packages and of their sources.
#pragma once

#include "packages/package_kinds.h"
#include "shell/small_images.h"

namespace zelt {

constexpr int ImageOfPackage(PackageKind kind)
{
    return IsReactionPackage(kind) ? kImageReactionPackage : kImagePropertyPackage;
}

// For a component that is a package or a manager of packages.
constexpr int ImageOfComponent(PackageKind kind)
{
    if (!IsManager(kind)) return ImageOfPackage(kind);
    return IsReactionPackage(kind) ? kImageReactionManager : kImagePropertyManager;
}

}  // namespace zelt
