#include "system/system_text.h"

#include <memory>
#include <new>

#include "system/narrow.h"

namespace zelt {
namespace {

constexpr DWORD kCapacity = 1024;

}  // namespace

std::string SystemText(HRESULT code) noexcept
{
    try {
        const auto buffer = std::make_unique<wchar_t[]>(kCapacity);
        const auto value = static_cast<DWORD>(code);
        DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, value,
                                      MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), buffer.get(), kCapacity, nullptr);
        if (length == 0) {
            DWORD_PTR inserts[] = {value};
            length = FormatMessageW(FORMAT_MESSAGE_FROM_STRING | FORMAT_MESSAGE_ARGUMENT_ARRAY, L"error code 0x%1!08X!",
                                    0, 0, buffer.get(), kCapacity, reinterpret_cast<va_list*>(inserts));
        }
        std::wstring_view text(buffer.get(), length);
        if (text.ends_with(L'\n')) text.remove_suffix(1);
        if (text.ends_with(L'\r')) text.remove_suffix(1);
        return text.empty() ? "<unknown error>" : Narrow(text);
    } catch (const std::bad_alloc&) {
        return "<out of memory>";
    }
}

}  // namespace zelt
