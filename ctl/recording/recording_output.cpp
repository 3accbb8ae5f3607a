#include "ctl/recording/recording_output.h"

namespace zelt::ctl {
namespace {

std::string WantedPath(const Arguments& arguments)
{
    const auto path = arguments.Value("-o");
    if (!path) throw UsageError("-o is needed: a recording is not text");
    return *path;
}

}  // namespace

RecordingOutput::RecordingOutput(const Arguments& arguments)
    : file(WantedPath(arguments)), records([this](std::string_view bytes) {
          file.Data().Bytes(bytes);
          return true;
      })
{}

void RecordingOutput::Keep()
{
    records.Flush();
    file.Keep();
}

}  // namespace zelt::ctl
