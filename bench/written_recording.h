// A recording of a given size in the folder for temporary files: a package that calculates and asks for values, with different
// numbers each time. The destructor deletes the file.
#pragma once

#include <string>

namespace zelt::bench {

class WrittenRecording {
public:
    // The recording is at least `bytes` long, and complete. Its header names the width of this program.
    explicit WrittenRecording(long long bytes);
    ~WrittenRecording();
    WrittenRecording(const WrittenRecording&) = delete;
    WrittenRecording& operator=(const WrittenRecording&) = delete;

    const std::wstring& Path() const { return path; }

private:
    std::wstring path;
};

}  // namespace zelt::bench
