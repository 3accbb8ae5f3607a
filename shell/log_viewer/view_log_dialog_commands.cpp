// The commands of CViewLogDlg: expanding, removing, searching, going through the errors, copying.
#include <algorithm>

#include "system/narrow.h"
#include "res/resource.h"
#include "shell/log_viewer/errors/details_setting.h"
#include "shell/log_viewer/fragment_search.h"
#include "shell/log_viewer/label_search.h"
#include "shell/log_viewer/long_task.h"
#include "shell/log_viewer/view_log_dialog.h"

namespace zelt {

void CViewLogDlg::Command(int command)
{
    if (loading && command != kCommandClose && command != IDCANCEL) {
        // The command needs the whole log.
        waiting.push_back(command);
        return;
    }
    if (LongTask::Running()) {
        if (command == kCommandClose || command == IDCANCEL) LongTask::Running()->Cancel();
        return;
    }
    switch (command) {
        case kCommandExpandAll: ExpandAll(); break;
        case kCommandCollapseAll: CollapseAll(); break;
        case kCommandRemoveQueries: RemoveQueries(); break;
        case kCommandFind: Find(); break;
        case kCommandFindNext: FindAgain(true); break;
        case kCommandFindPrevious: FindAgain(false); break;
        case kCommandNextError: NextError(); break;
        case kCommandErrorDetails: {
            const bool wanted = !errorList.HasDetails();
            ShowErrorDetails(wanted);
            KeepErrorDetails(wanted);
            break;
        }
        case kCommandFilterErrors:
            ShowErrorDetails(true);
            filterBar.Focus();
            break;
        case kCommandClose:
        case IDCANCEL: Close(); break;
        default: break;
    }
    // The window was closed while a task ran.
    if (closed && Window()) Close();
}

void CViewLogDlg::ExpandAll()
{
    bool all;
    {
        LongTask task(Window());
        all = tree.ExpandAll(task);
    }
    if (all || closed) return;
    ShowBox(L"Expanding stopped at " + std::to_wstring(LogTree::kExpandedItems) +
                L" nested items. The rest can be expanded one by one.",
            L"Expand all items:", MB_ICONINFORMATION);
}

void CViewLogDlg::CollapseAll()
{
    LongTask task(Window());
    tree.CollapseAll(task);
}

void CViewLogDlg::RemoveQueries()
{
    ItemIndex item = 0;
    {
        LongTask task(Window());
        const LogTree::Unpainted unpainted(tree);
        const FragmentSearch query("QueryInterface", false);
        for (PagedLog::Stretch stretch = {}; item < model.Size() && task.Continue();) {
            if (item >= stretch.end) {
                stretch = model.StretchOf(item);
                // Pages without the word need not be parsed.
                if (stretch.page && !query.MayBeIn(model.BytesOf(*stretch.page))) {
                    item = stretch.end;
                    continue;
                }
            }
            if (!model.IsQuery(item) || model.IsRemoved(item)) {
                ++item;
                continue;
            }
            const ItemIndex parent = model.Parent(item);
            const ItemIndex next = model.End(item);
            model.Remove(item);
            tree.Erase(item);
            if (parent != kNoItem) tree.UpdateParent(parent);
            item = next;
        }
    }
    tree.KeepSelectionVisible();
    const bool complete = item >= model.Size();
    model.CleanErrors();
    FilterErrors();
    if (complete) EnableMenuItem(GetMenu(Window()), kCommandRemoveQueries, MF_BYCOMMAND | MF_GRAYED | MF_DISABLED);
}

void CViewLogDlg::NextError()
{
    if (model.ErrorCount() == 0) {
        ShowBox(L"There are no errors or warnings.", L"Next error:", MB_ICONINFORMATION);
        return;
    }
    if (errorList.Count() == 0) {
        ShowBox(L"No error or warning matches the filter.", L"Next error:", MB_ICONINFORMATION);
        return;
    }
    const ItemIndex selected = tree.Selected();
    std::size_t next = selected == kNoItem ? 0 : errorList.FirstAfter(selected);
    if (next == errorList.Count()) next = 0;
    Select(errorList.ItemOf(static_cast<int>(next)));
    // Selects the row, too. This selects the item once more, which does no harm.
    errorList.Select(next);
}

void CViewLogDlg::ShowErrorDetails(bool wanted)
{
    errorList.ShowDetails(wanted);
    filterBar.Show(wanted);
    splitter.KeepFree(wanted ? filterBar.Height() : 0);
    CheckMenuItem(GetMenu(Window()), kCommandErrorDetails, MF_BYCOMMAND | (wanted ? MF_CHECKED : MF_UNCHECKED));
    // A filter that nobody sees must not hide anything.
    if (!wanted) filterBar.Clear();
    Arrange();
}

// Also called by the filter's timer, which keeps firing while the window is busy.
void CViewLogDlg::FilterErrors()
{
    if (loading || LongTask::Running()) return;
    KillTimer(Window(), kFilterTimer);
    const bool complete = errorList.Filter(filterBar.Text());
    if (!Window()) return;
    std::wstring count;
    if (errorList.IsFiltered()) {
        count = std::to_wstring(errorList.Count()) + (complete ? L" of " : L" so far, of ") +
                std::to_wstring(model.ErrorCount());
    }
    filterBar.SetCount(count);
}

void CViewLogDlg::Find()
{
    if (!CTreeSearchDlg(search).Run(Window())) return;
    search.forward = true;
    Search();
}

void CViewLogDlg::FindAgain(bool forward)
{
    if (!search.confirmed) {
        ShowBox(L"No previous search string.", forward ? L"Find next:" : L"Find previous:", MB_ICONERROR);
        return;
    }
    search.forward = forward;
    Search();
}

void CViewLogDlg::Search()
{
    const bool forward = search.forward;
    ItemIndex start = tree.Selected();
    if (start == kNoItem) {
        start = model.First();
        if (start == kNoItem) {
            ShowBox(L"Tree is empty", L"Search tree:", MB_ICONERROR);
            return;
        }
        // The search then examines the tree's first item first.
        if (forward) start = model.Previous(start);
    }
    ItemIndex found;
    {
        LongTask task(Window());
        found = FindLabel(model, start, search, task);
        if (task.Cancelled()) return;
    }
    if (found != kNoItem) {
        Select(found);
    } else {
        ShowBox(L"Search string \"" + search.text + L"\" is not found.", L"Search tree:", MB_ICONINFORMATION);
    }
}

void CViewLogDlg::Select(ItemIndex item)
{
    if (!model.IsComplete(model.Outermost(item))) return;
    // An item enters the tree with all its siblings, which may be millions.
    if (!tree.Select(item)) ShowBox(L"There is not enough memory to show the item.", L"Error:", MB_ICONWARNING);
}

// Esc in an empty filter closes the window, as elsewhere.
bool CViewLogDlg::EmptiesFilter(const MSG& message) const
{
    return message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE && filterBar.HasFocus() &&
           !filterBar.Text().empty();
}

// A key that selects the text of the filter, and would expand the tree elsewhere.
bool CViewLogDlg::IsForFilter(const MSG& message) const
{
    return message.message == WM_KEYDOWN && message.wParam == 'A' && GetKeyState(VK_CONTROL) < 0 &&
           filterBar.HasFocus();
}

bool CViewLogDlg::IsCopyKey(const MSG& message) const
{
    return message.message == WM_KEYDOWN && message.wParam == 'C' && GetKeyState(VK_CONTROL) < 0 &&
           GetKeyState(VK_MENU) >= 0 && (message.hwnd == treeView || message.hwnd == errorList.Window());
}

void CViewLogDlg::CopyLabel() const
{
    const ItemIndex item = GetFocus() == errorList.Window() ? errorList.Selected() : tree.Selected();
    if (item == kNoItem || !OpenClipboard(Window())) return;
    const std::wstring label = Widen(model.Label(item), CP_UTF8);
    const std::size_t size = (label.size() + 1) * sizeof(wchar_t);
    EmptyClipboard();
    if (const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, size)) {
        std::copy_n(label.c_str(), label.size() + 1, static_cast<wchar_t*>(GlobalLock(memory)));
        GlobalUnlock(memory);
        // The clipboard owns the memory once it has taken it.
        if (!SetClipboardData(CF_UNICODETEXT, memory)) GlobalFree(memory);
    }
    CloseClipboard();
}

}  // namespace zelt
