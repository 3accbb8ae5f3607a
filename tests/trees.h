// Where tests find files of the source tree and of the builds: in the trees in which the tests were built. If ZELT_TEST_TREE
// names a folder, tests take copies of these files from there; the builds are in its subfolder build. Paths are in the code
// page of the process, with slashes.
#pragma once

#include <cstdlib>
#include <string>

namespace zelt::test {

inline std::string FileOf(const char* builtTree, const char* copiedTree, const std::string& file)
{
    const char* copies = std::getenv("ZELT_TEST_TREE");
    return (copies ? std::string(copies) + copiedTree : builtTree) + '/' + file;
}

constexpr bool kBuiltFor32Bit = sizeof(void*) == 4;

// A file of the source tree.
inline std::string SourceFile(const std::string& file) { return FileOf(ZELT_SOURCE_DIR, "", file); }

// A file of the build that the test program belongs to.
inline std::string BuiltFile(const std::string& file)
{
    return FileOf(ZELT_BUILD_DIR, kBuiltFor32Bit ? "/build/i686" : "/build/x86_64", file);
}

// A file of the build of the other width, which may not exist. If ZELT_TEST_ONE_WIDTH is set, this system cannot run programs
// of the other width: the file then never exists.
inline std::string OtherBuiltFile(const std::string& file)
{
    if (std::getenv("ZELT_TEST_ONE_WIDTH")) return SourceFile("build/none/" + file);
    return FileOf(ZELT_OTHER_BUILD_DIR, kBuiltFor32Bit ? "/build/x86_64" : "/build/i686", file);
}

// The server of each build.
inline std::string BuiltServer() { return BuiltFile(kBuiltFor32Bit ? "shell/ZELT.EXE" : "shell/ZELT64.EXE"); }
inline std::string OtherBuiltServer() { return OtherBuiltFile(kBuiltFor32Bit ? "shell/ZELT64.EXE" : "shell/ZELT.EXE"); }

}  // namespace zelt::test
