#include "system/guid_text.h"

#include <objbase.h>

#include <iterator>

namespace zelt {

std::wstring GuidText(const GUID& guid)
{
    wchar_t text[40] = L"";
    StringFromGUID2(guid, text, static_cast<int>(std::size(text)));
    return text;
}

}  // namespace zelt
