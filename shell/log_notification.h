// The notification "Logging to ..." beside the clock, for users who want to see where each log goes. Main thread only.
#pragma once

#include <windows.h>

#include <string>

#include "system/owners.h"

namespace zelt {

class LogNotification {
public:
    LogNotification() = default;
    // Removes the icon, which otherwise disappears some time after the last notification, or on a click.
    ~LogNotification();
    LogNotification(const LogNotification&) = delete;
    LogNotification& operator=(const LogNotification&) = delete;

    void Show(const std::wstring& path);

private:
    void Hide();
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    UniqueWindow window;
    bool isShown = false;
};

}  // namespace zelt
