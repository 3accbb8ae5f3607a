// Reads pieces of a log that another program may be changing or cutting off. Opens the log a second time, so that it does not
// move the position of the reader that goes through the whole log. Maps nothing into memory: access to a mapped page that has
// been cut off would end the program.
#pragma once

#include <cstdint>
#include <vector>

#include "log_reader/log_parts.h"
#include "shell/log_viewer/shared_log_file.h"

namespace zelt {

class PageFile {
public:
    // Call once. Returns 0 or the system's error code.
    DWORD Open(const std::wstring& path) { return file.Open(path); }

    // The bytes from `offset` up to `end`, or as many of them as there are; kSlack more bytes after them can be read. Valid until
    // the next call.
    std::string_view Read(std::int64_t offset, std::int64_t end);

private:
    SharedLogFile file;
    std::vector<char> buffer;
};

}  // namespace zelt
