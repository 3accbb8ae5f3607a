// A folder for a test's files, which the destructor deletes together with its contents.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace zelt::test {

class TemporaryFolder {
public:
    TemporaryFolder()
    {
        std::random_device random;
        path = std::filesystem::temp_directory_path() / ("zeltctl-folder-" + std::to_string(random()));
        std::filesystem::create_directories(path);
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string Path() const { return path.string(); }
    std::string Of(const std::string& name) const { return (path / name).string(); }
    std::string Write(const std::string& name, const std::string& bytes) const
    {
        std::filesystem::create_directories((path / name).parent_path());
        std::ofstream(path / name, std::ios::binary) << bytes;
        return Of(name);
    }
    std::vector<std::string> Names() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(path))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

private:
    std::filesystem::path path;
};

}  // namespace zelt::test
