// Whole files as bytes, without conversion of line ends. Failures throw std::runtime_error.
#pragma once

#include <string>

namespace zelt::test {

std::string ReadWholeFile(const std::string& path);
void WriteWholeFile(const std::string& path, const std::string& bytes);
bool FileExists(const std::string& path);

// A path for a file of this process in the folder for temporary files; nothing is created.
std::string TemporaryPath(const std::string& name);

}  // namespace zelt::test
