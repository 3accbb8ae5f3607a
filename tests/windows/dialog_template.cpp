#include "tests/windows/dialog_template.h"

#include <cstddef>
#include <cstring>

namespace zelt::test {
namespace {

// Reads the documented extended form of a dialog template.
class TemplateReader {
public:
    TemplateReader(const void* data, std::size_t size)
        : begin(static_cast<const std::byte*>(data)), at(begin), end(begin + size)
    {}

    template <class T>
    T Read()
    {
        T value = {};
        if (static_cast<std::size_t>(end - at) < sizeof value) return value;
        std::memcpy(&value, at, sizeof value);
        at += sizeof value;
        return value;
    }
    std::wstring ReadText()
    {
        std::wstring text;
        while (const auto character = Read<wchar_t>()) text += character;
        return text;
    }
    // A text, or a number as "#number".
    std::wstring ReadName()
    {
        const auto first = Read<WORD>();
        if (first == 0xFFFF) return L'#' + std::to_wstring(Read<WORD>());
        if (first == 0) return {};
        return static_cast<wchar_t>(first) + ReadText();
    }
    void Align()
    {
        while ((at - begin) % 4 != 0 && at < end) ++at;
    }
    void Skip(std::size_t bytes) { at += bytes; }

private:
    const std::byte* begin;
    const std::byte* at;
    const std::byte* end;
};

std::wstring Kind(const std::wstring& windowClass, DWORD style)
{
    if (windowClass == L"#128") {
        switch (style & BS_TYPEMASK) {
            case BS_PUSHBUTTON: return L"button";
            case BS_DEFPUSHBUTTON: return L"default button";
            case BS_AUTOCHECKBOX: return L"check box";
            default: return L"other button";
        }
    }
    if (windowClass == L"#129") return L"edit field";
    if (windowClass == L"#130") return (style & SS_TYPEMASK) == SS_ICON ? L"icon" : L"text";
    if (windowClass == L"#131") return L"list box";
    // Class names are not case-sensitive.
    std::wstring lower = windowClass;
    CharLowerBuffW(lower.data(), static_cast<DWORD>(lower.size()));
    return lower;
}

}  // namespace

std::wstring DialogText(HMODULE module, int dialog)
{
    const HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(dialog), reinterpret_cast<const wchar_t*>(RT_DIALOG));
    if (!resource) return L"(no such dialog)";
    TemplateReader reader(LockResource(LoadResource(module, resource)), SizeofResource(module, resource));
    if (reader.Read<WORD>() != 1 || reader.Read<WORD>() != 0xFFFF) return L"(not the extended form)";
    reader.Skip(2 * sizeof(DWORD));  // help number, extended style
    const auto style = reader.Read<DWORD>();
    const auto controls = reader.Read<WORD>();
    reader.Skip(4 * sizeof(short));
    const std::wstring menu = reader.ReadName();
    reader.ReadName();  // class
    std::wstring text = L'"' + reader.ReadText() + L'"';
    if (!menu.empty()) text += L" menu " + menu;
    if (style & DS_SETFONT) {
        reader.Skip(2 * sizeof(WORD) + 2);  // size, weight, slant and character set
        text += L" font " + reader.ReadText();
    }
    text += L'\n';
    for (WORD control = 0; control < controls; ++control) {
        reader.Align();
        reader.Skip(2 * sizeof(DWORD));
        const auto controlStyle = reader.Read<DWORD>();
        reader.Skip(4 * sizeof(short));
        const auto number = static_cast<int>(reader.Read<DWORD>());
        const std::wstring kind = Kind(reader.ReadName(), controlStyle);
        const std::wstring label = reader.ReadName();
        reader.Skip(reader.Read<WORD>());
        text += kind + L' ' + std::to_wstring(number) + L" \"" + label + L"\"\n";
    }
    return text;
}

}  // namespace zelt::test
