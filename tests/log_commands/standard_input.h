// Gives the program a file as its standard input, for as long as the object lives.
#pragma once

#include <fcntl.h>

#include <string>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace zelt::test {

class StandardInput {
public:
    // The path is ASCII.
    explicit StandardInput(const std::string& path)
    {
#ifdef _WIN32
        saved = _dup(0);
        const int file = _open(path.c_str(), _O_RDONLY | _O_BINARY);
        _dup2(file, 0);
        _close(file);
#else
        saved = dup(0);
        const int file = open(path.c_str(), O_RDONLY);
        dup2(file, 0);
        close(file);
#endif
    }
    ~StandardInput()
    {
#ifdef _WIN32
        _dup2(saved, 0);
        _close(saved);
#else
        dup2(saved, 0);
        close(saved);
#endif
    }
    StandardInput(const StandardInput&) = delete;
    StandardInput& operator=(const StandardInput&) = delete;

private:
    int saved;
};

}  // namespace zelt::test
