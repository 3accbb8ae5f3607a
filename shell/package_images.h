// The pictures of packages and of what packages come from.
#pragma once

#include "packages/package_kinds.h"
#include "shell/small_images.h"

namespace zelt {

constexpr int ImageOfPackage(PackageKind kind)
{
    return IsReactionPackage(kind) ? kImageReactionPackage : kImagePropertyPackage;
}

// Of a component that is a package or a manager of packages.
constexpr int ImageOfComponent(PackageKind kind)
{
    if (!IsManager(kind)) return ImageOfPackage(kind);
    return IsReactionPackage(kind) ? kImageReactionManager : kImagePropertyManager;
}

}  // namespace zelt
