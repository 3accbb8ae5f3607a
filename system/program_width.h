// How many bits the code of a program or library file is for, read from the file's own header. Loads nothing, and trusts no field
// before checking that the file reaches that far.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zelt {

// 32 or 64; nothing when these bytes are not the beginning of a Windows program or library for a known processor.
std::optional<int> WidthOfImage(std::string_view bytes);

// Whether these bytes are the beginning of a .NET library that is compiled for the width of the process that loads it, although
// its header says 32 bits.
bool IsCompiledOnLoading(std::string_view bytes);

enum class ImageState { Sound, Missing, NoImage };

struct ImageFile {
    ImageState state;
    int bits = 0;
    bool suitsBoth = false;  // compiled on loading
};

ImageFile ReadImageFile(const std::wstring& path);

}  // namespace zelt
