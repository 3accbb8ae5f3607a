#include "ctl/output_file.h"

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <system_error>

#include "ctl/paths.h"

namespace zelt::ctl {
namespace {

std::FILE* Create(const std::string& path, const std::string& beside)
{
    std::error_code ignored;
    if (std::filesystem::is_directory(PathOf(path), ignored)) throw Refusal(path + ": this is a folder");
#ifdef _WIN32
    std::FILE* stream = _wfopen(PathOf(beside).c_str(), L"wb");
#else
    std::FILE* stream = std::fopen(beside.c_str(), "wb");
#endif
    if (!stream) throw OutputError(path + ": " + std::strerror(errno));
    return stream;
}

}  // namespace

OutputFile::OutputFile(const std::string& path)
    : path(path), beside(path + ".part"), stream(Create(path, beside)), data(stream)
{}

OutputFile::~OutputFile()
{
    if (!stream) return;
    Close();
    std::error_code ignored;
    std::filesystem::remove(PathOf(beside), ignored);
}

bool OutputFile::Close()
{
    const bool written = data.Flush();
    const bool closed = std::fclose(stream) == 0;
    stream = nullptr;
    return written && closed;
}

void OutputFile::Keep()
{
    std::error_code error;
    const bool written = Close();
    if (written) std::filesystem::rename(PathOf(beside), PathOf(path), error);
    if (written && !error) return;
    std::error_code ignored;
    std::filesystem::remove(PathOf(beside), ignored);
    throw std::runtime_error(path + ": " + (written ? error.message() : "the file cannot be written"));
}

}  // namespace zelt::ctl
