// The version that a program declares in its own resources.
#pragma once

#include <string>

namespace zelt {

// "1.0.0.0", from the file version of the program at `path`; "<unknown>" when it declares none that can be read.
std::string FileVersionText(const std::wstring& path);

}  // namespace zelt
