#include "unit/select_co_object.h"

#include <utility>

#include "system/dialogs/message_box.h"
#include "res/resource.h"

namespace zelt {
namespace {

std::optional<CLSID> AskUser(const std::wstring& title, REFCLSID leftOut)
{
    CSelectCOObject dialog(title, kUnitOperationCategory, leftOut);
    if (dialog.DoModal(GetActiveWindow()) != IDOK) return {};
    return dialog.Components()[static_cast<std::size_t>(dialog.Selection())].classId;
}

UnitSelector current = AskUser;

}  // namespace

CSelectCOObject::CSelectCOObject(std::wstring title, const wchar_t* category, REFCLSID leftOut,
                                 const ClassSources& sources)
    : title(std::move(title))
{
    const ComponentSearch search[] = {{category, leftOut}};
    FoundComponents found = FindComponents(search, sources);
    components = std::move(found.lists.front());
    ShowFailure(found.outcome);
}

INT_PTR CSelectCOObject::DoModal(HWND owner) { return RunModal(kSelectDialog, owner); }

bool CSelectCOObject::OnInit()
{
    SetWindowTextW(Window(), title.c_str());
    SetIcons(kIconApplication);
    const HWND list = Item(kComponentList);
    for (std::size_t index = 0; index < components.size(); ++index) {
        const LRESULT row =
            SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(components[index].displayName.c_str()));
        // The list box sorts: each row says which component it stands for.
        if (row >= 0) SendMessageW(list, LB_SETITEMDATA, static_cast<WPARAM>(row), static_cast<LPARAM>(index));
    }
    return true;
}

bool CSelectCOObject::OnCommand(int id, int notification)
{
    if (id == IDOK || (id == kComponentList && notification == LBN_DBLCLK)) {
        Accept();
        return true;
    }
    return Dialog::OnCommand(id, notification);
}

void CSelectCOObject::Accept()
{
    const HWND list = Item(kComponentList);
    const LRESULT row = SendMessageW(list, LB_GETCURSEL, 0, 0);
    if (row == LB_ERR) return;
    const LRESULT index = SendMessageW(list, LB_GETITEMDATA, static_cast<WPARAM>(row), 0);
    if (index < 0 || static_cast<std::size_t>(index) >= components.size()) return;
    selection = static_cast<int>(index);
    End(IDOK);
}

std::optional<CLSID> SelectUnitOperation(const std::wstring& title, REFCLSID leftOut)
{
    return current(title, leftOut);
}

UnitSelector SetUnitSelector(UnitSelector selector) { return std::exchange(current, selector ? selector : AskUser); }

}  // namespace zelt
