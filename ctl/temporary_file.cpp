#include "ctl/temporary_file.h"

#include <filesystem>
#include <random>

#include "ctl/paths.h"

namespace zelt::ctl {

TemporaryFile::TemporaryFile(const std::string& ending)
{
    std::random_device random;
    path = Utf8Of(std::filesystem::temp_directory_path() / ("zeltctl-" + std::to_string(random()) + ending));
}

TemporaryFile::~TemporaryFile()
{
    std::error_code ignored;
    std::filesystem::remove(PathOf(path), ignored);
}

}  // namespace zelt::ctl
