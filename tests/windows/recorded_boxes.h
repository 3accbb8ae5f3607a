// Answers the message boxes of this process, so that none is shown, and keeps their contents. Boxes may come from any thread.
// Only one recorder exists at a time.
#pragma once

#include <windows.h>

#include <mutex>
#include <string>
#include <vector>

#include "tests/windows/patched_import.h"

namespace zelt::test {

class RecordedBoxes {
public:
    struct Box {
        HWND owner;
        std::wstring text, caption;
        UINT flags;
    };

    explicit RecordedBoxes(int answer = IDOK) : answer(answer), patch("MessageBoxW", Record) { current = this; }
    ~RecordedBoxes() { current = nullptr; }
    RecordedBoxes(const RecordedBoxes&) = delete;
    RecordedBoxes& operator=(const RecordedBoxes&) = delete;

    std::vector<Box> All() const
    {
        const std::lock_guard lock(mutex);
        return boxes;
    }
    // The only box since the previous call; a box with a text that says so if there were none or several.
    Box TakeOne()
    {
        const std::lock_guard lock(mutex);
        Box box = {nullptr, L"(" + std::to_wstring(boxes.size()) + L" boxes)", L"", 0};
        if (boxes.size() == 1) box = boxes.front();
        boxes.clear();
        return box;
    }

private:
    static int WINAPI Record(HWND owner, const wchar_t* text, const wchar_t* caption, UINT flags)
    {
        const std::lock_guard lock(current->mutex);
        current->boxes.push_back({owner, text, caption, flags});
        return current->answer;
    }

    static inline RecordedBoxes* current = nullptr;
    const int answer;
    mutable std::mutex mutex;
    std::vector<Box> boxes;
    const PatchedImport<decltype(MessageBoxW)> patch;
};

}  // namespace zelt::test
