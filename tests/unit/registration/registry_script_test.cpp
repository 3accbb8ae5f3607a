// What a registry script writes, entry by entry.
#include "registration/registry_script.h"

#include <gtest/gtest.h>

#include "com/failure.h"
#include "system/narrow.h"

namespace zelt {
namespace {

const ScriptReplacements kReplacements = {{L"MODULE", L"\"C:\\o'b 100%\\ZELT.EXE\""}, {L"APPID", L"{id}"}};

// A line for each entry: the key, and the value's name and text if there is one.
std::string Entries(std::wstring_view script)
{
    std::wstring lines;
    for (const ScriptEntry& entry : ReadScript(script, kReplacements)) {
        lines += entry.key;
        if (entry.value) lines += L" [" + *entry.value + L"] " + entry.text;
        lines += L'\n';
    }
    return Narrow(lines);
}

struct ScriptCase {
    const char* name;
    const wchar_t* script;
    const char* entries;
};

TEST(RegistryScript, IsReadEntryByEntry)
{
    // clang-format off
    const ScriptCase cases[] = {
        {"nothing", L"HKCR { }", ""},
        {"a key", L"HKCR\r\n{\r\n    Key\r\n}\r\n", "Key\n"},
        {"a key with a text", L"HKCR { 'A key' = s 'text' }", "A key [] text\n"},
        {"an empty text", L"HKCR { Key = s '' }", "Key [] \n"},
        {"an apostrophe", L"HKCR { Key = s 'it''s' }", "Key [] it's\n"},
        {"a value", L"HKCR { Key { val Name = s 'text' } }", "Key\nKey [Name] text\n"},
        {"a key that is everybody's", L"HKCR { NoRemove CLSID { ForceRemove '{c}' = s 'class' { Sub } } }", "CLSID\\{c} [] class\nCLSID\\{c}\\Sub\n"},
        {"a key of that name", L"HKCR { 'NoRemove' 'val' = s 'x' }", "NoRemove\nval [] x\n"},
        {"two keys", L"HKCR { A = s '1' B = s '2' }", "A [] 1\nB [] 2\n"},
        {"replacements", L"HKCR { '%APPID%' { val M = s '%MODULE%,0' } }", "{id}\n{id} [M] \"C:\\o'b 100%\\ZELT.EXE\",0\n"},
        {"a per cent sign", L"HKCR { Key = s '%MODULE% \"%%1\"' }", "Key [] \"C:\\o'b 100%\\ZELT.EXE\" \"%1\"\n"},
    };
    // clang-format on
    for (const ScriptCase& one : cases) {
        SCOPED_TRACE(one.name);
        EXPECT_EQ(one.entries, Entries(one.script));
    }
}

TEST(RegistryScript, IsRefusedWhereItIsNotUnderstood)
{
    // clang-format off
    const wchar_t* const scripts[] = {
        L"",
        L"HKLM { }",                        // another root
        L"HKCR { Key",                      // no end
        L"HKCR { Key = s 'text }",          // no closing apostrophe
        L"HKCR { Key = d '1' }",            // another type
        L"HKCR { Key { val Name } }",       // a value without text
        L"HKCR { Key = s '%UNKNOWN%' }",    // no such replacement
        L"HKCR { Key = s '100%' }",         // half a replacement
        L"HKCR { } Key",                    // something after the end
    };
    // clang-format on
    for (const wchar_t* script : scripts) EXPECT_THROW(Entries(script), com::Failure) << Narrow(script);
}

}  // namespace
}  // namespace zelt
