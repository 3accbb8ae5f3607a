// A file that a command writes, such as the one that -o names. It is written beside its final place and then renamed, so that a
// command that fails neither leaves half a file nor destroys an older one.
#pragma once

#include <cstdio>
#include <string>

#include "ctl/command.h"

namespace zelt::ctl {

// The row of -o in the option tables of the commands that have it.
// clang-format off
#define ZELT_OUTPUT_OPTION \
    {"-o", "FILE", "writes to this file, which appears when it is complete"}
// clang-format on

class OutputFile {
public:
    // The path is UTF-8. Throws Refusal for a folder, OutputError when the file cannot be created.
    explicit OutputFile(const std::string& path);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    Output& Data() { return data; }
    // Renames the complete file to its final name. Throws std::runtime_error when the file cannot be written completely or
    // renamed. Without this call, the destructor deletes the file.
    void Keep();

private:
    bool Close();

    const std::string path, beside;
    std::FILE* stream;
    Output data;
};

// Calls `write` with the output that the command line asks for: a file with -o, otherwise the command's own output.
template <class Write>
int WithOutputFile(const Arguments& arguments, Streams& streams, Write&& write)
{
    const auto path = arguments.Value("-o");
    if (!path) return write(streams);
    OutputFile file(*path);
    Streams own = {file.Data(), streams.messages};
    const int code = write(own);
    file.Keep();
    return code;
}

}  // namespace zelt::ctl
