#include "ctl/recording/recording_file.h"

#include <algorithm>
#include <climits>

#include "ctl/command.h"

namespace zelt::ctl {

using recording::ReadEnd;

RecordingFile::RecordingFile(const std::string& path)
    : path(path), file(path), records([this](char* bytes, std::size_t count) {
          const int read = file.Read(bytes, static_cast<int>(std::min<std::size_t>(count, INT_MAX)));
          if (read < 0) throw InputError(this->path + ": cannot be read");
          return static_cast<std::size_t>(read);
      })
{}

const recording::HeaderRecord& RecordingFile::ReadHeader()
{
    const recording::Record* const record = records.Next();
    const auto* header = record ? std::get_if<recording::HeaderRecord>(record) : nullptr;
    if (!header || header->version == 0) throw InputError(path + ": this is not a recording");
    if (header->version > recording::kFormatVersion) throw InputError(path + ": a newer ZELT made this recording");
    return *header;
}

int RecordingFile::ReportEnd(bool isClosed, Output& messages) const
{
    const ReadEnd end = records.End();
    if (isClosed) return kFine;
    messages << "zeltctl: " << path << ": the recording ";
    if (end == ReadEnd::Damaged) {
        messages << "is damaged at byte " << static_cast<long long>(records.Offset())
                 << "; only what comes before is used\n";
    } else if (end == ReadEnd::CutOff) {
        messages << "is cut off in the middle of a record\n";
    } else {
        messages << "has no end: its program is still running, or died\n";
    }
    return kFinding;
}

}  // namespace zelt::ctl
