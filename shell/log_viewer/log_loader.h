// Reads a log into a viewer's model, and as much of it into the tree as the tree holds at first. Shows its progress, and
// reports in message boxes what is wrong with the log. Keeps what it could read.
//
// A large log as ZELT writes it is read in pages: the viewer is shown with the first page, and the user can work with it while
// the others are read.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <utility>

#include "shell/log_viewer/log_tree.h"
#include "shell/log_viewer/pages/paged_log.h"

namespace zelt {

class CFileProgressDialog;
class Dialog;
class SharedLogFile;

class LogLoader {
public:
    struct Viewer {
        std::function<void()> firstPage;   // called when the model has its first page
        std::function<void()> morePages;   // called up to ten times a second while more pages are read
        std::function<void(MSG&)> handle;  // handles a message that is not for the progress window
    };

    // `closed` may become true while the log is read; this ends the reading.
    LogLoader(const Dialog& dialog, const std::wstring& path, PagedLog& model, LogTree& tree, const bool& closed,
              Viewer viewer)
        : dialog(dialog), path(path), model(model), tree(tree), closed(closed), viewer(std::move(viewer))
    {}

    // False when the file does not exist or cannot be opened. Call once only.
    bool Load();

private:
    void Read(const SharedLogFile& file, CFileProgressDialog* progress, bool inPages);
    void ReportParseError(int line) const;

    const Dialog& dialog;
    const std::wstring& path;
    PagedLog& model;
    LogTree& tree;
    const bool& closed;
    const Viewer viewer;
};

}  // namespace zelt
