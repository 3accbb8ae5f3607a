#include "ctl/log/log_file_input.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "ctl/command.h"
#include "ctl/log/log_paths.h"
#include "ctl/paths.h"

#ifdef _WIN32
#include <io.h>
#include <share.h>
#else
#include <unistd.h>
#endif

namespace zelt::ctl {
namespace {

#ifdef _WIN32
int OpenFile(const std::string& path)
{
    return _wsopen(PathOf(path).c_str(), _O_RDONLY | _O_BINARY | _O_SEQUENTIAL, _SH_DENYNO);
}
void CloseFile(int descriptor) { _close(descriptor); }
int OpenStandardInput()
{
    _setmode(_fileno(stdin), _O_BINARY);
    return _fileno(stdin);
}
#else
int OpenFile(const std::string& path) { return open(path.c_str(), O_RDONLY | O_CLOEXEC); }
void CloseFile(int descriptor) { close(descriptor); }
int OpenStandardInput() { return STDIN_FILENO; }
#endif

int OpenOrThrow(const std::string& path)
{
    if (path == kStandardInput) return OpenStandardInput();
    // Some systems open a folder like a file and read nothing from it, others deny access.
    std::error_code ignored;
    if (std::filesystem::is_directory(PathOf(path), ignored)) throw InputError(path + ": this is a folder, not a log");
    if (IsPattern(path)) throw InputError(path + ": no file matches");
    const int descriptor = OpenFile(path);
    if (descriptor < 0) throw InputError(path + ": " + std::strerror(errno));
    return descriptor;
}

}  // namespace

LogFileInput::LogFileInput(const std::string& path)
    : isStandard(path == kStandardInput), descriptor(OpenOrThrow(path)), file(descriptor)
{}

int LogFileInput::Read(char* out, int length)
{
    const int count = file.Read(out, length);
#ifdef _WIN32
    // After the end of the file, the runtime library reads nothing more until the position is set.
    if (count == 0 && !isStandard) _lseeki64(descriptor, 0, SEEK_CUR);
#endif
    return count;
}

LogFileInput::~LogFileInput()
{
    if (!isStandard) CloseFile(descriptor);
}

}  // namespace zelt::ctl
