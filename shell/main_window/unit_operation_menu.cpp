#include "shell/main_window/unit_operation_menu.h"

#include <algorithm>

#include "res/resource.h"

namespace zelt {
namespace {

constexpr std::size_t kMostItems = kCommandUnknownUnitOperation - kCommandFirstUnitOperation + 1;

// A menu treats a single ampersand as the mark of a mnemonic.
std::wstring MenuText(const std::wstring& name)
{
    std::wstring text;
    for (const wchar_t character : name) text.append(character == L'&' ? 2 : 1, character);
    return text;
}

UINT CheckFlag(bool checked) { return checked ? MF_CHECKED : MF_UNCHECKED; }

}  // namespace

void PrepareUnitOperationMenu(HMENU menu, std::span<const ComponentInfo> installed, REFCLSID chosen)
{
    while (GetMenuItemCount(menu) > 1) DeleteMenu(menu, 1, MF_BYPOSITION);
    const bool asks = chosen == CLSID_NULL;
    const bool found = asks || std::any_of(installed.begin(), installed.end(),
                                           [&chosen](const ComponentInfo& info) { return info.classId == chosen; });
    CheckMenuItem(menu, 0, MF_BYPOSITION | CheckFlag(asks));
    AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
    for (std::size_t index = 0; index < std::min(installed.size(), kMostItems); ++index) {
        AppendMenuW(menu, MF_STRING | CheckFlag(installed[index].classId == chosen), kCommandFirstUnitOperation + index,
                    MenuText(installed[index].displayName).c_str());
    }
    if (!found) AppendMenuW(menu, MF_STRING | MF_CHECKED, kCommandUnknownUnitOperation, L"<Unknown>");
}

std::optional<CLSID> UnitOperationOf(int command, std::span<const ComponentInfo> installed)
{
    if (command < kCommandFirstUnitOperation || command > kCommandUnknownUnitOperation) return {};
    const auto index = static_cast<std::size_t>(command - kCommandFirstUnitOperation);
    if (index >= installed.size()) return {};
    return installed[index].classId;
}

}  // namespace zelt
