// A fuzzer's main program for compilers that provide none: tests all seeds unchanged, then the requested number of
// damaged ones. Takes -runs=NUMBER and files and folders of seeds, like the guided fuzzer, and ignores other options.
// Writes an input that crashes the program to a file in the current folder.
#include <sanitizer/common_interface_defs.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include "mutation.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace zelt::test {
namespace {

namespace fs = std::filesystem;

std::string Content(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) throw std::runtime_error(path.string() + " cannot be read");
    return {std::istreambuf_iterator<char>(file), {}};
}

void AddSeeds(const fs::path& path, std::vector<fs::path>& files)
{
    if (!fs::is_directory(path)) return files.push_back(path);
    for (const auto& entry : fs::directory_iterator(path)) files.push_back(entry.path());
}

const std::string* tried = nullptr;
std::string failedInput;

void KeepInput()
{
    if (!tried) return;
    if (std::FILE* file = std::fopen(failedInput.c_str(), "wb")) {
        std::fwrite(tried->data(), 1, tried->size(), file);
        std::fclose(file);
        std::fprintf(stderr, "The input is in %s.\n", failedInput.c_str());
    }
    tried = nullptr;
}

void Try(const std::string& input)
{
    tried = &input;
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
    tried = nullptr;
}

int Main(const std::vector<std::string>& words)
{
    long runs = 0;
    std::vector<fs::path> files;
    for (const std::string& word : words) {
        if (word.starts_with("-runs="))
            runs = std::atol(word.c_str() + 6);
        else if (!word.starts_with("-"))
            AddSeeds(word, files);
    }
    std::sort(files.begin(), files.end());
    std::vector<std::string> seeds;
    for (const fs::path& file : files) seeds.push_back(Content(file));
    if (seeds.empty()) {
        std::fputs("There are no seeds.\n", stderr);
        return 2;
    }
    __sanitizer_set_death_callback(KeepInput);
    std::signal(SIGABRT, [](int) { KeepInput(); });
    for (const std::string& seed : seeds) Try(seed);
    std::mt19937 random(20240229);
    for (long run = 0; run < runs; ++run) {
        std::string input = seeds[random() % seeds.size()];
        const bool isRearranged = random() % 2;
        if (isRearranged) Rearrange(input, random);
        if (!isRearranged || random() % 2) Mutate(input, random);
        Try(input);
    }
    std::printf("%zu seeds, %ld inputs made from them\n", seeds.size(), runs);
    return 0;
}

}  // namespace
}  // namespace zelt::test

int main(int count, char** words)
{
    zelt::test::failedInput = std::filesystem::path(words[0]).filename().string() + "-failed.zlg";
    return zelt::test::Main({words + 1, words + count});
}
