// Which registered classes a process of this width can use, and which .NET libraries suit both widths.
#include "system/class_obstacle.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "system/program_width.h"
#include "tests/system/harness/scratch_registry.h"

namespace zelt::test {
namespace {

constexpr bool kIs32Bit = sizeof(void*) == 4;
const std::wstring kOtherViewOnly =
    kIs32Bit ? L"registered for 64-bit programs only" : L"registered for 32-bit programs only";
const std::wstring kOtherLibrary =
    kIs32Bit ? L"its library is for 64-bit programs only" : L"its library is for 32-bit programs only";

constexpr WORD kOwnMachine = kIs32Bit ? IMAGE_FILE_MACHINE_I386 : IMAGE_FILE_MACHINE_AMD64;
constexpr WORD kOtherMachine = kIs32Bit ? IMAGE_FILE_MACHINE_AMD64 : IMAGE_FILE_MACHINE_I386;

constexpr DWORD kNoDotNet = ~0u;

// The beginning of a library, whose headers say its width.
std::vector<char> Headers(WORD machine, DWORD dotNetFlags = kNoDotNet)
{
    std::vector<char> bytes(1024);
    IMAGE_DOS_HEADER dos = {};
    dos.e_magic = IMAGE_DOS_SIGNATURE;
    dos.e_lfanew = 128;
    std::memcpy(bytes.data(), &dos, sizeof dos);
    IMAGE_NT_HEADERS32 nt = {};
    nt.Signature = IMAGE_NT_SIGNATURE;
    nt.FileHeader.Machine = machine;
    nt.FileHeader.NumberOfSections = 1;
    nt.FileHeader.SizeOfOptionalHeader = sizeof nt.OptionalHeader;
    nt.OptionalHeader.NumberOfRvaAndSizes = IMAGE_NUMBEROF_DIRECTORY_ENTRIES;
    IMAGE_SECTION_HEADER section = {};
    section.VirtualAddress = 0x2000;
    section.SizeOfRawData = 256;
    section.PointerToRawData = 768;
    if (dotNetFlags != kNoDotNet) {
        nt.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_COM_DESCRIPTOR].VirtualAddress = 0x2008;
        IMAGE_COR20_HEADER header = {};
        header.cb = sizeof header;
        header.Flags = dotNetFlags;
        std::memcpy(bytes.data() + 768 + 8, &header, sizeof header);
    }
    std::memcpy(bytes.data() + 128, &nt, sizeof nt);
    std::memcpy(bytes.data() + 128 + sizeof nt, &section, sizeof section);
    return bytes;
}

class Library {
public:
    explicit Library(const std::vector<char>& bytes)
    {
        wchar_t folder[MAX_PATH], name[MAX_PATH];
        GetTempPathW(MAX_PATH, folder);
        GetTempFileNameW(folder, L"lib", 0, name);
        path = name;
        const HANDLE file = CreateFileW(name, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
        DWORD written = 0;
        EXPECT_TRUE(WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr));
        CloseHandle(file);
    }
    ~Library() { DeleteFileW(path.c_str()); }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    const std::wstring& Path() const { return path; }
    std::wstring Url() const
    {
        std::wstring url = L"file:///" + path;
        for (wchar_t& c : url) {
            if (c == L'\\') c = L'/';
        }
        return url;
    }

private:
    std::wstring path;
};

TEST(DotNetLibrary, SuitsBothWidthsUnlessItsHeaderSaysOtherwise)
{
    struct Row {
        WORD machine;
        DWORD dotNetFlags;
        int bits;
        bool suitsBoth;
    };
    const Row rows[] = {
        {IMAGE_FILE_MACHINE_I386, kNoDotNet, 32, false}, {IMAGE_FILE_MACHINE_AMD64, kNoDotNet, 64, false},
        {IMAGE_FILE_MACHINE_I386, 1, 32, true},      // intermediate code only
        {IMAGE_FILE_MACHINE_I386, 1 + 8, 32, true},  // and signed
        {IMAGE_FILE_MACHINE_I386, 1 + 2, 32, false},     {IMAGE_FILE_MACHINE_I386, 0, 32, false},
        {IMAGE_FILE_MACHINE_AMD64, 1, 64, false},
    };
    for (const Row& row : rows) {
        const ImageFile file = ReadImageFile(Library(Headers(row.machine, row.dotNetFlags)).Path());
        EXPECT_EQ(ImageState::Sound, file.state);
        EXPECT_EQ(row.bits, file.bits) << row.machine << ' ' << row.dotNetFlags;
        EXPECT_EQ(row.suitsBoth, file.suitsBoth) << row.machine << ' ' << row.dotNetFlags;
    }
}

TEST(DotNetLibrary, WhoseHeaderIsDamagedSuitsOneWidth)
{
    const std::vector<char> whole = Headers(IMAGE_FILE_MACHINE_I386, 1);
    const std::string_view bytes(whole.data(), whole.size());
    ASSERT_TRUE(IsCompiledOnLoading(bytes));
    const std::size_t needed = 768 + 8 + offsetof(IMAGE_COR20_HEADER, Flags) + sizeof(DWORD);
    for (std::size_t size = 0; size < needed; ++size) EXPECT_FALSE(IsCompiledOnLoading(bytes.substr(0, size))) << size;
    EXPECT_TRUE(IsCompiledOnLoading(bytes.substr(0, needed)));
    for (std::size_t at = 0; at < needed; ++at) {
        std::string damaged(bytes);
        damaged[at] = '\xFF';
        static_cast<void>(IsCompiledOnLoading(damaged));  // must not read beyond the end
    }
    for (const std::size_t place : {offsetof(IMAGE_NT_HEADERS32, FileHeader.NumberOfSections),
                                    offsetof(IMAGE_NT_HEADERS32, OptionalHeader.NumberOfRvaAndSizes)}) {
        std::string damaged(bytes);
        damaged[128 + place] = 0;
        EXPECT_FALSE(IsCompiledOnLoading(damaged)) << place;
    }
}

class ClassObstacle : public testing::Test {
protected:
    static constexpr wchar_t kClass[] = L"CLSID\\{0A000000-0000-0000-0000-000000000001}";

    void SetUp() override
    {
        ASSERT_EQ(ERROR_SUCCESS, ownKey.Create(scratch.Root(), L"Own"));
        ASSERT_EQ(ERROR_SUCCESS, otherKey.Create(scratch.Root(), L"Other"));
    }
    void Write(const wchar_t* view, const std::wstring& path, const wchar_t* name, const std::wstring& text)
    {
        RegistryKey key;
        ASSERT_EQ(ERROR_SUCCESS, key.Create(scratch.Root(), std::wstring(view) + L'\\' + path));
        ASSERT_EQ(ERROR_SUCCESS, key.WriteString(name, text));
    }
    void Serve(const wchar_t* view, const wchar_t* server, const std::wstring& file)
    {
        Write(view, std::wstring(kClass) + L'\\' + server, L"", file);
    }
    std::wstring Obstacle()
    {
        const RegistryRoot own = {ownKey.Get(), 0}, other = {otherKey.Get(), 0};
        const auto has = [](const RegistryRoot& root) { return RegistryKey().Open(root, kClass) == ERROR_SUCCESS; };
        return ObstacleOf(8 * sizeof(void*), has(own) ? &own : nullptr, has(other) ? &other : nullptr, kClass);
    }

    ScratchKey scratch;
    RegistryKey ownKey, otherKey;
    const Library ownLibrary{Headers(kOwnMachine)}, otherLibrary{Headers(kOtherMachine)};
};

TEST_F(ClassObstacle, IsTheWidthOfTheLibrary)
{
    Serve(L"Own", L"InprocServer32", ownLibrary.Path());
    EXPECT_EQ(L"", Obstacle());
    for (const std::wstring& file : {otherLibrary.Path(), L'"' + otherLibrary.Path() + L'"'}) {
        Serve(L"Own", L"InprocServer32", file);
        EXPECT_EQ(kOtherLibrary, Obstacle());
    }
    Serve(L"Own", L"InprocServer32", L"C:\\no such folder\\no such file.dll");
    EXPECT_EQ(L"", Obstacle()) << "the attempt to use it says why it fails";
    Serve(L"Own", L"InprocServer32", L"");
    EXPECT_EQ(L"", Obstacle());
}

TEST_F(ClassObstacle, IsTheOnlyRegistrationInTheOtherView)
{
    Serve(L"Other", L"InprocServer32", otherLibrary.Path());
    EXPECT_EQ(kOtherViewOnly, Obstacle());
    Serve(L"Own", L"InprocServer32", ownLibrary.Path());
    EXPECT_EQ(L"", Obstacle());
}

TEST_F(ClassObstacle, IsNoneForAProgramOfItsOwn)
{
    Serve(L"Other", L"InprocServer32", otherLibrary.Path());
    Serve(L"Other", L"LocalServer32", L"server.exe");
    EXPECT_EQ(L"", Obstacle());
    Serve(L"Own", L"InprocServer32", otherLibrary.Path());
    EXPECT_EQ(L"", Obstacle()) << "the other view's program serves both";
}

TEST_F(ClassObstacle, IsNoneForASurrogate)
{
    Serve(L"Other", L"InprocServer32", otherLibrary.Path());
    Write(L"Other", kClass, L"AppID", L"{0B000000-0000-0000-0000-000000000001}");
    EXPECT_EQ(kOtherViewOnly, Obstacle());
    Write(L"Other", L"AppID\\{0B000000-0000-0000-0000-000000000001}", L"Other", L"");
    EXPECT_EQ(kOtherViewOnly, Obstacle());
    Write(L"Other", L"AppID\\{0B000000-0000-0000-0000-000000000001}", L"DllSurrogate", L"");
    EXPECT_EQ(L"", Obstacle());
}

TEST_F(ClassObstacle, OfADotNetClassIsThatOfItsAssembly)
{
    const std::wstring server = std::wstring(kClass) + L"\\InprocServer32";
    const Library any(Headers(IMAGE_FILE_MACHINE_I386, 1));
    for (const wchar_t* loader : {L"mscoree.dll", L"C:\\Windows\\System32\\MSCOREE.DLL"}) {
        Write(L"Own", server, L"CodeBase", L"");
        Serve(L"Own", L"InprocServer32", loader);
        EXPECT_EQ(L"", Obstacle()) << "it may be in the system's cache";
        Write(L"Own", server, L"CodeBase", any.Url());
        EXPECT_EQ(L"", Obstacle());
        for (const std::wstring& location : {otherLibrary.Url(), otherLibrary.Path()}) {
            Write(L"Own", server, L"CodeBase", location);
            EXPECT_EQ(kOtherLibrary, Obstacle()) << testing::PrintToString(location);
        }
        std::wstring escaped = otherLibrary.Url();
        escaped.replace(escaped.rfind(L'.'), 1, L"%2E");
        Write(L"Own", server, L"CodeBase", escaped);
        EXPECT_EQ(kOtherLibrary, Obstacle()) << testing::PrintToString(escaped);
        Write(L"Own", server, L"CodeBase", L"http://example.org/component.dll");
        EXPECT_EQ(L"", Obstacle());
    }
    // The location may be in the subkey of one version of the class instead.
    Write(L"Own", server, L"CodeBase", L"");
    Write(L"Own", server + L"\\1.0.0.0", L"CodeBase", otherLibrary.Url());
    EXPECT_EQ(kOtherLibrary, Obstacle());
}

}  // namespace
}  // namespace zelt::test
