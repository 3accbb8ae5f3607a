// A name for a file in the folder for temporary files; the file goes with its owner.
#pragma once

#include <string>

namespace zelt::ctl {

class TemporaryFile {
public:
    // The name ends in `ending`. Nothing is made.
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
