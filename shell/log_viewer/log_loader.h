// Reads a log into a viewer's model, and into its tree as far as the tree takes it at once. Shows its progress, and reports in
// message boxes what is wrong with the log. Keeps what it could read.
#pragma once

#include <string>

#include "shell/log_viewer/log_model.h"
#include "shell/log_viewer/log_tree.h"

namespace zelt {

class CFileProgressDialog;
class Dialog;
class SharedLogFile;

class LogLoader {
public:
    // `closed` may become true while the log is read; this ends the reading.
    LogLoader(const Dialog& dialog, const std::wstring& path, LogModel& model, LogTree& tree, const bool& closed)
        : dialog(dialog), path(path), model(model), tree(tree), closed(closed)
    {}

    // False when the file does not exist or cannot be opened. Call once only.
    bool Load();

private:
    void Read(const SharedLogFile& file, CFileProgressDialog* progress) const;
    void ReportParseError(int line) const;

    const Dialog& dialog;
    const std::wstring& path;
    LogModel& model;
    LogTree& tree;
    const bool& closed;
};

}  // namespace zelt
