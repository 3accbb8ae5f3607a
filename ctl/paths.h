// Converts between paths of files and UTF-8, the form of the command line on every system.
#pragma once

#include <filesystem>
#include <string>

namespace zelt::ctl {

inline std::filesystem::path PathOf(const std::string& utf8) { return {std::u8string(utf8.begin(), utf8.end())}; }

inline std::string Utf8Of(const std::filesystem::path& path)
{
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

}  // namespace zelt::ctl
