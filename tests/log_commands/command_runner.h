// Runs a command of zeltctl in this process and keeps its output; provides temporary log files for it; and compares its
// output with outputs that are stored beside the tests.
#pragma once

#include <string>
#include <vector>

#include "tests/trees.h"

namespace zelt::test {

struct Outcome {
    int code;
    std::string data, messages;
};

// `coloured`: with colours, as on a terminal.
Outcome RunCommand(const std::vector<std::string>& words, bool coloured = false);

// A file in the folder for temporary files.
class TemporaryLog {
public:
    // Contains exactly these bytes. The file's name starts with `name`, in UTF-8.
    explicit TemporaryLog(const std::string& bytes, const std::string& name = "zeltctl-test");
    ~TemporaryLog();
    TemporaryLog(const TemporaryLog&) = delete;
    TemporaryLog& operator=(const TemporaryLog&) = delete;

    // In UTF-8.
    const std::string& Path() const { return path; }
    void Append(const std::string& bytes) const;

private:
    std::string path;
};

// A log with these entries, which begin in line 3.
std::string InLog(const std::string& entries);

// A short conversation, kept beside the tests.
inline const std::string kConversation = SourceFile("tests/log_commands/conversation.zlg");

std::string GoldenLog(const std::string& name);
extern const std::vector<std::string> kGoldenLogs;

std::string ReadBytes(const std::string& path);
std::vector<std::string> LinesOf(const std::string& text);
// How often `part` occurs in `text`.
int CountOf(const std::string& text, const std::string& part);

// Compares the output with the stored output `name`. If ZELT_UPDATE_GOLDEN is in the environment, stores the output instead.
void ExpectKept(const std::string& name, const std::string& output, const std::string& folder = "log_commands");

}  // namespace zelt::test
