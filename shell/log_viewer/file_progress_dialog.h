// The small window that shows how much of a long log has been read. Modeless: the viewer's thread calls it while it reads the
// log, and now and then such a call handles the thread's messages. Closes when its object is destroyed.
#pragma once

#include <windows.h>

#include <functional>
#include <utility>

#include "system/dialogs/dialog.h"

namespace zelt {

class CFileProgressDialog final : public Dialog {
public:
    // `others` handles the messages to other windows.
    CFileProgressDialog(HWND owner, std::function<void(MSG&)> others);
    ~CFileProgressDialog() override;

    // Cheap enough to call for every element. False once the user has cancelled.
    template <class Position>
    bool Advance(Position&& position)
    {
        if (++steps % 64 == 0 && GetTickCount64() - shown >= 100) Show(position());
        return !cancelled;
    }
    // The same, but always shows the position and handles messages.
    bool AdvanceNow(double position)
    {
        Show(position);
        return !cancelled;
    }

private:
    bool OnCommand(int id, int notification) override;
    // `position` runs from 0 to 1.
    void Show(double position);

    const std::function<void(MSG&)> others;
    bool cancelled = false;
    unsigned steps = 0;
    ULONGLONG shown = 0;
};

}  // namespace zelt
