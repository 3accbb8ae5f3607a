#include "tests/system/harness/text_file.h"

#include <windows.h>

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace zelt::test {

std::string ReadWholeFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) throw std::runtime_error("cannot read " + path);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void WriteWholeFile(const std::string& path, const std::string& bytes)
{
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) throw std::runtime_error("cannot write " + path);
}

bool FileExists(const std::string& path) { return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

std::string TemporaryPath(const std::string& name)
{
    char folder[MAX_PATH + 1];
    const DWORD length = GetTempPathA(sizeof folder, folder);
    if (length == 0 || length > MAX_PATH) throw std::runtime_error("there is no folder for temporary files");
    return std::string(folder, length) + "zelt-test-" + std::to_string(GetCurrentProcessId()) + '-' + name;
}

}  // namespace zelt::test
