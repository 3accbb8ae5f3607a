// The program's resources: numbers, captions, controls, menus and keys, each compared with the expected value. The
// numbers are literals here, because people and programs that control the windows rely on them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/windows/dialog_template.h"
#include "tests/windows/menu_text.h"
#include "tests/trees.h"

namespace {

using namespace zelt::test;

class ProgramResources : public testing::Test {
protected:
    void SetUp() override
    {
        const std::filesystem::path program = std::filesystem::absolute(BuiltServer()).make_preferred();
        module = LoadLibraryExW(program.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
        ASSERT_NE(nullptr, module);
    }
    void TearDown() override
    {
        if (module) FreeLibrary(module);
    }
    // The numbers of all resources of a type, ascending; 0 for one with a name.
    std::vector<int> Numbers(const wchar_t* type) const
    {
        std::vector<int> numbers;
        EnumResourceNamesW(module, type, TakeNumber, reinterpret_cast<LONG_PTR>(&numbers));
        std::sort(numbers.begin(), numbers.end());
        return numbers;
    }
    static const wchar_t* Predefined(const void* type) { return static_cast<const wchar_t*>(type); }
    std::string Bytes(const wchar_t* type, int number) const
    {
        const HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(number), type);
        if (!resource) return {};
        return {static_cast<const char*>(LockResource(LoadResource(module, resource))),
                SizeofResource(module, resource)};
    }
    std::wstring Menu(int number) const
    {
        const HMENU menu = LoadMenuW(module, MAKEINTRESOURCEW(number));
        const std::wstring text = MenuText(menu);
        DestroyMenu(menu);
        return text;
    }

    HMODULE module = nullptr;

private:
    static BOOL CALLBACK TakeNumber(HMODULE, const wchar_t*, wchar_t* name, LONG_PTR numbers)
    {
        reinterpret_cast<std::vector<int>*>(numbers)->push_back(
            IS_INTRESOURCE(name) ? static_cast<int>(reinterpret_cast<ULONG_PTR>(name)) : 0);
        return TRUE;
    }
};

TEST_F(ProgramResources, HaveTheirNumbers)
{
    using Numbers = std::vector<int>;
    EXPECT_EQ(Numbers({101, 104, 109, 116, 135}), this->Numbers(L"REGISTRY"));
    EXPECT_EQ(Numbers({1, 2, 3}), this->Numbers(L"TYPELIB"));
    EXPECT_EQ(Numbers({102, 105, 107, 108, 111, 112, 113, 124}), this->Numbers(Predefined(RT_DIALOG)));
    EXPECT_EQ(Numbers({203, 204}), this->Numbers(Predefined(RT_MENU)));
    EXPECT_EQ(Numbers({205}), this->Numbers(Predefined(RT_ACCELERATOR)));
    EXPECT_EQ(Numbers({202}), this->Numbers(Predefined(RT_BITMAP)));
    EXPECT_EQ(Numbers({201}), this->Numbers(Predefined(RT_GROUP_ICON)));
}

TEST_F(ProgramResources, EachScriptRegistersWhatItsNumberStandsFor)
{
    const struct {
        int script;
        std::string subject;
    } rows[] = {{101, "ZELT.EXE"},
                {101, ".zlg"},
                {109, "{4CCF55DB-E332-42F8-B685-188989F8E1EC}"},
                {104, "{6377AC63-7A36-46DC-8897-F277012CDA9D}"},
                {135, "{2034CAB3-FBC2-4C81-9449-CD13C73CE674}"},
                {116, "{2FD53BB5-1013-418D-BAB6-15DF8AD606A6}"}};
    for (const auto& row : rows) {
        std::string text = Bytes(L"REGISTRY", row.script);
        // The letters of an identifier may have either case.
        if (row.subject[0] == '{') {
            std::transform(text.begin(), text.end(), text.begin(),
                           [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
        }
        EXPECT_NE(std::string::npos, text.find(row.subject)) << row.script << ": " << row.subject;
    }
}

TEST_F(ProgramResources, TheSmallImagesAreOneStrip)
{
    const std::string bytes = Bytes(Predefined(RT_BITMAP), 202);
    ASSERT_GE(bytes.size(), sizeof(BITMAPINFOHEADER));
    BITMAPINFOHEADER header;
    std::copy_n(bytes.data(), sizeof header, reinterpret_cast<char*>(&header));
    EXPECT_EQ(16, header.biHeight);
    EXPECT_EQ(0, header.biWidth % 16);
    // The last image that a window shows is number 12.
    EXPECT_GE(header.biWidth / 16, 13);
}

TEST_F(ProgramResources, TheMainWindow)
{
    EXPECT_EQ(
        L"\"ZELT Packages:\" menu #203 font Segoe UI\n"
        L"syslistview32 201 \"Exported packages\"\n",
        DialogText(module, 102));
    EXPECT_EQ(
        L"&File\n"
        L" 1004 &Close\n"
        L"&Package\n"
        L" 901 &Add package...\n"
        L" 902 &Remove package...\n"
        L"&Log\n"
        L" 903 &Enable logging\n"
        L" -\n"
        L" 904 &View log...\n"
        L"&Options\n"
        L" 905 &Automatic log location\n"
        L" 906 &Prompt for opening log when object terminates\n"
        L" &PRAVIK logs unit operation:\n"
        L"  907 &Ask user\n"
        L"  -\n"
        L" 910 &Record calls\n"
        L"&Help\n"
        L" 908 &Help\n"
        L" 909 &About\n"
        L" 911 &Report a problem...\n",
        Menu(203));
}

TEST_F(ProgramResources, TheDialogsOfTheMainWindow)
{
    EXPECT_EQ(
        L"\"Export package:\" font Segoe UI\n"
        L"text 302 \"&Packages on this computer:\"\n"
        L"systreeview32 301 \"Packages on this computer\"\n"
        L"text 304 \"Export &name:\"\n"
        L"edit field 303 \"\"\n"
        L"check box 305 \"&Logging enabled\"\n"
        L"button 309 \"\"\n"
        L"default button 1 \"OK\"\n"
        L"button 2 \"Cancel\"\n",
        DialogText(module, 105));
    EXPECT_EQ(
        L"\"About ZELT\" font Segoe UI\n"
        L"icon -1 \"#201\"\n"
        L"text 308 \"ZELT (Zeltora)\"\n"
        L"text 306 \"\"\n"
        L"text -1 \"Runs 32-bit CAPE-OPEN packages out of process and logs every call.\"\n"
        L"text -1 \"Copyright the ZELT developers\"\n"
        L"default button 1 \"OK\"\n",
        DialogText(module, 107));
    EXPECT_EQ(
        L"\"Report a problem:\" font Segoe UI\n"
        L"text 311 \"\"\n"
        L"syslistview32 310 \"Texts of the report\"\n"
        L"button 312 \"&Logs...\"\n"
        L"button 313 \"&Show text\"\n"
        L"default button 1 \"&Write...\"\n"
        L"button 2 \"Cancel\"\n",
        DialogText(module, 108));
    EXPECT_EQ(
        L"\"\" font MS Sans Serif\n"
        L"text -1 \"Unit operations\"\n"
        L"list box 307 \"\"\n"
        L"default button 1 \"OK\"\n"
        L"button 2 \"Cancel\"\n",
        DialogText(module, 124));
}

TEST_F(ProgramResources, TheViewer)
{
    EXPECT_EQ(
        L"\"Log viewer:\" menu #204 font MS Shell Dlg\n"
        L"text -1 \"Log\"\n"
        L"systreeview32 206 \"\"\n"
        L"text 1105 \"Filter:\"\n"
        L"edit field 1106 \"\"\n"
        L"text 1107 \"\"\n"
        L"text -1 \"Errors\"\n"
        L"syslistview32 207 \"\"\n",
        DialogText(module, 111));
    EXPECT_EQ(
        L"&Log\n"
        L" 1001 &Expand all items\tCtrl+A\n"
        L" 1002 C&ollapse all items\tCtrl+B\n"
        L" 1003 Remove &QueryInterface notifications\tCtrl+Q\n"
        L" -\n"
        L" 1008 &Next error\tF4\n"
        L" -\n"
        L" 1004 &Close\tESC\n"
        L"&Search\n"
        L" 1005 &Find...\tCtrl+F\n"
        L" 1006 Find &next\tF3\n"
        L" 1007 Find &previous\tShift+F3\n"
        L"&Errors\n"
        L" 1009 &Line, call and object\tCtrl+E\n"
        L" 1010 &Filter\tCtrl+L\n",
        Menu(204));
    EXPECT_EQ(
        L"\"Search:\" font MS Shell Dlg\n"
        L"text -1 \"&Text to find:\"\n"
        L"edit field 1101 \"\"\n"
        L"check box 1102 \"&Ignore case\"\n"
        L"check box 1103 \"&Only match entire item\"\n"
        L"default button 1 \"OK\"\n"
        L"button 2 \"Cancel\"\n",
        DialogText(module, 112));
    EXPECT_EQ(
        L"\"Parsing log file:\" font MS Shell Dlg\n"
        L"text -1 \"Progress\"\n"
        L"msctls_progress32 1104 \"\"\n"
        L"default button 2 \"Cancel\"\n",
        DialogText(module, 113));
}

TEST_F(ProgramResources, TheKeys)
{
    // The key, then its modifiers, then the command.
    const std::vector<std::wstring> expected = {L"65 ctrl 1001", L"66 ctrl 1002", L"70 ctrl 1005",   L"81 ctrl 1003",
                                                L"27 1004",      L"114 1006",     L"114 shift 1007", L"115 1008",
                                                L"69 ctrl 1009", L"76 ctrl 1010"};
    ACCEL keys[20];
    const int count = CopyAcceleratorTableW(LoadAcceleratorsW(module, MAKEINTRESOURCEW(205)), keys, 20);
    std::vector<std::wstring> found;
    for (int index = 0; index < count; ++index) {
        const ACCEL& key = keys[index];
        std::wstring text = std::to_wstring(key.key);
        if (!(key.fVirt & FVIRTKEY)) text += L" as a character";
        if (key.fVirt & FCONTROL) text += L" ctrl";
        if (key.fVirt & FSHIFT) text += L" shift";
        if (key.fVirt & FALT) text += L" alt";
        found.push_back(text + L' ' + std::to_wstring(key.cmd));
    }
    EXPECT_TRUE(std::is_permutation(expected.begin(), expected.end(), found.begin(), found.end()))
        << testing::PrintToString(found);
}

}  // namespace
