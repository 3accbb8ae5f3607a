// What a log viewer shows of a file: a recording's log, which is rendered into a folder for temporary files and goes with its owner, or
// the file itself.
#pragma once

#include <string>

namespace zelt {

class RenderedRecording {
public:
    // Throws std::runtime_error for a recording that this program cannot render. A file that is none, or cannot be read, is left as
    // it is.
    explicit RenderedRecording(const std::wstring& path);
    ~RenderedRecording();
    RenderedRecording(const RenderedRecording&) = delete;
    RenderedRecording& operator=(const RenderedRecording&) = delete;

    // Of the log.
    const std::wstring& Path() const { return path; }

private:
    void Render(const std::wstring& recording);
    void Remove() noexcept;

    std::wstring path, folder;
};

}  // namespace zelt
