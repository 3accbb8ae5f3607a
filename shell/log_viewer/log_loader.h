// Reads a log into a viewer's model, and into its tree as far as the tree takes it at once. Shows how far it has come, and says
// in message boxes what is wrong with the log; what could be read of it stays.
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
    // `closed` may become true while the log is read, which ends the reading.
    LogLoader(const Dialog& dialog, const std::wstring& path, LogModel& model, LogTree& tree, const bool& closed)
        : dialog(dialog), path(path), model(model), tree(tree), closed(closed)
    {}

    // False when there is no such file, or it cannot be opened. Once only.
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
