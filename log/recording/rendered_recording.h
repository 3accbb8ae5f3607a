// What a log viewer shows for a file: the file itself or, for a recording, its log, which is rendered into a folder for temporary
// files and removed with this object.
#pragma once

#include <string>

namespace zelt {

class RenderedRecording {
public:
    // Throws std::runtime_error for a recording that this program cannot render. A file that is no recording, or cannot be read,
    // is shown as it is.
    explicit RenderedRecording(const std::wstring& path);
    ~RenderedRecording();
    RenderedRecording(const RenderedRecording&) = delete;
    RenderedRecording& operator=(const RenderedRecording&) = delete;

    // The path of the log.
    const std::wstring& Path() const { return path; }

private:
    void Render(const std::wstring& recording);
    void Remove() noexcept;

    std::wstring path, folder;
};

}  // namespace zelt
