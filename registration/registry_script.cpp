#include "registration/registry_script.h"

#include <windows.h>

#include <algorithm>

#include "com/failure.h"
#include "com/type_info.h"
#include "system/narrow.h"

namespace zelt {
namespace {

struct Token {
    std::wstring text;
    bool quoted = false;

    bool Is(const wchar_t* word) const { return !quoted && text == word; }
};

class ScriptReader {
public:
    ScriptReader(std::wstring_view text, const ScriptReplacements& replacements)
        : rest(text), replacements(replacements)
    {
        Advance();
    }

    std::vector<ScriptEntry> Read()
    {
        Expect(L"HKCR");
        ReadKeys({});
        if (next) Refuse();
        return std::move(entries);
    }

private:
    [[noreturn]] static void Refuse() { throw com::Failure(HRESULT_FROM_WIN32(ERROR_INVALID_DATA)); }

    bool IsNext(const wchar_t* word) const { return next && next->Is(word); }

    std::wstring Take()
    {
        if (!next) Refuse();
        std::wstring taken = std::move(next->text);
        Advance();
        return taken;
    }

    void Expect(const wchar_t* word)
    {
        if (!IsNext(word)) Refuse();
        Advance();
    }

    void ReadKeys(const std::wstring& path)
    {
        Expect(L"{");
        while (!IsNext(L"}")) {
            if (IsNext(L"val")) {
                Advance();
                std::wstring name = Replaced(Take());
                entries.push_back({path, std::move(name), ReadText()});
            } else {
                ReadKey(path);
            }
        }
        Advance();
    }

    void ReadKey(const std::wstring& path)
    {
        const bool shared = IsNext(L"NoRemove");
        if (shared || IsNext(L"ForceRemove")) Advance();
        const std::wstring key = (path.empty() ? path : path + L'\\') + Replaced(Take());
        if (IsNext(L"=")) {
            entries.push_back({key, std::wstring(), ReadText()});
        } else if (!shared) {
            entries.push_back({key, {}, {}});
        }
        if (IsNext(L"{")) ReadKeys(key);
    }

    std::wstring ReadText()
    {
        Expect(L"=");
        Expect(L"s");
        return Replaced(Take());
    }

    // The next token is a word, a sign, or text between apostrophes. Inside such text, two apostrophes stand for one.
    void Advance()
    {
        constexpr wchar_t kBlanks[] = L" \t\r\n";
        next.reset();
        const std::size_t start = rest.find_first_not_of(kBlanks);
        if (start == rest.npos || rest[start] == L'\0') return;
        rest.remove_prefix(start);
        if (rest[0] != L'\'') {
            const bool sign = rest[0] == L'{' || rest[0] == L'}' || rest[0] == L'=';
            const std::size_t end = sign ? 1 : std::min(rest.find_first_of(L" \t\r\n{}='"), rest.size());
            next = Token{std::wstring(rest.substr(0, end)), false};
            rest.remove_prefix(end);
            return;
        }
        next = Token{{}, true};
        for (std::size_t i = 1; i < rest.size(); ++i) {
            if (rest[i] == L'\'' && rest.substr(i + 1, 1) != L"'") {
                rest.remove_prefix(i + 1);
                return;
            }
            if (rest[i] == L'\'') ++i;
            next->text += rest[i];
        }
        Refuse();
    }

    std::wstring Replaced(const std::wstring& text) const
    {
        std::wstring replaced;
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (text[i] != L'%') {
                replaced += text[i];
                continue;
            }
            const std::size_t end = text.find(L'%', i + 1);
            if (end == text.npos) Refuse();
            const std::wstring name = text.substr(i + 1, end - i - 1);
            const auto found = replacements.find(name);
            if (name.empty()) {
                replaced += L'%';
            } else if (found != replacements.end()) {
                replaced += found->second;
            } else {
                Refuse();
            }
            i = end;
        }
        return replaced;
    }

    std::wstring_view rest;
    const ScriptReplacements& replacements;
    std::optional<Token> next;
    std::vector<ScriptEntry> entries;
};

}  // namespace

std::wstring ScriptText(int script)
{
    const HMODULE module = com::ThisModule();
    const HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(script), L"REGISTRY");
    if (!resource) throw com::Failure(HRESULT_FROM_WIN32(GetLastError()));
    const auto* text = static_cast<const char*>(LockResource(LoadResource(module, resource)));
    return Widen({text, SizeofResource(module, resource)});
}

std::vector<ScriptEntry> ReadScript(std::wstring_view text, const ScriptReplacements& replacements)
{
    return ScriptReader(text, replacements).Read();
}

}  // namespace zelt
