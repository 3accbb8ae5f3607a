#include "log/recording/rendered_recording.h"

#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include "guard/fault_guard.h"
#include "log/log_file.h"
#include "log/recording/recording_rendering.h"
#include "system/owners.h"

namespace zelt {
namespace {

namespace fs = std::filesystem;

// A recording that other processes may still be writing.
class Recording {
public:
    explicit Recording(const std::wstring& path) : file(_wfopen(path.c_str(), L"rb")) {}

    recording::RecordReader Reader() const
    {
        return recording::RecordReader([stream = file.get()](char* bytes, std::size_t count) {
            return stream ? std::fread(bytes, 1, count, stream) : 0;
        });
    }

private:
    Owner<FILE*, std::fclose> file;
};

bool IsRecording(const std::wstring& path)
{
    const Recording file(path);
    recording::RecordReader records = file.Reader();
    const recording::Record* const first = records.Next();
    const auto* header = first ? std::get_if<recording::HeaderRecord>(first) : nullptr;
    return header && header->version != 0;
}

// A new folder, so that the log can have the recording's name.
fs::path NewFolder()
{
    const fs::path parent = fs::temp_directory_path();
    for (int number = 1;; ++number) {
        fs::path folder = parent / ("zelt-" + std::to_string(GetCurrentProcessId()) + '-' + std::to_string(number));
        if (fs::create_directory(folder)) return folder;
    }
}

}  // namespace

RenderedRecording::RenderedRecording(const std::wstring& path) : path(path)
{
    if (!IsRecording(path)) return;
    folder = NewFolder().wstring();
    this->path = (fs::path(folder) / fs::path(path).stem()).wstring() + L".zlg";
    try {
        Render(path);
    } catch (...) {
        Remove();
        throw;
    }
}

RenderedRecording::~RenderedRecording() { Remove(); }

void RenderedRecording::Render(const std::wstring& source)
{
    PrepareGuards();
    const Recording file(source);
    recording::RecordReader records = file.Reader();
    LogFile log;
    if (log.Open(path) != 0) throw std::runtime_error("its log cannot be made");
    const Rendering rendering = RenderRecording(records, std::move(log));
    if (!rendering.isRecording) throw std::runtime_error(rendering.obstacle);
    if (rendering.lost > 0) throw std::runtime_error("the disk has no room for its log");
}

void RenderedRecording::Remove() noexcept
{
    std::error_code ignored;
    if (!folder.empty()) fs::remove_all(folder, ignored);
}

}  // namespace zelt
