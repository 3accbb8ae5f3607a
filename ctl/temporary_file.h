// A name for a file in the folder for temporary files. The destructor deletes the file.
#pragma once

#include <string>

namespace zelt::ctl {

class TemporaryFile {
public:
    // The name ends in `ending`. Creates no file.
    explicit TemporaryFile(const std::string& ending);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    // In UTF-8.
    const std::string& Path() const { return path; }

private:
    std::string path;
};

}  // namespace zelt::ctl
