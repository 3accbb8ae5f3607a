// A log of a given size in the folder for temporary files: repeats the entries of the golden log, with different
// numbers in their values each time, as a simulation writes them. The destructor deletes the file.
#pragma once

#include <string>

namespace zelt::bench {

class WrittenLog {
public:
    // The log is at least `bytes` long, complete, and well-formed.
    explicit WrittenLog(long long bytes) : WrittenLog(bytes, false) {}
    // A log with enough entries to fill a window, then blanks.
    static WrittenLog OfBlanks(long long bytes) { return WrittenLog(bytes, true); }
    ~WrittenLog();
    WrittenLog(const WrittenLog&) = delete;
    WrittenLog& operator=(const WrittenLog&) = delete;

    const std::wstring& Path() const { return path; }
    double Megabytes() const { return megabytes; }

private:
    WrittenLog(long long bytes, bool blanks);

    std::wstring path;
    double megabytes = 0;
};

}  // namespace zelt::bench
