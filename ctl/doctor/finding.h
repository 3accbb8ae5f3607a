// What is wrong with an installation: one sentence, put together from what is wrong, what it causes and how to fix it.
#pragma once

#include <string>
#include <vector>

#include "system/edition.h"

namespace zelt::ctl {

// What --fix does about a finding.
enum class Fix {
    None,
    Register,     // registers ZELT again
    LibraryFile,  // writes the files of the standard's type libraries again
    RewriteList,  // writes the list of packages again, without the entries that cannot be read
};

struct Finding {
    std::string rule;    // one word, for programs
    std::string wrong;   // a clause that begins the sentence
    std::string effect;  // follows "so"
    std::string remedy;  // what to do, as an instruction to the user
    Fix fix = Fix::None;
    const Edition* edition = nullptr;  // the edition that the finding is about; null for what both share
};

using Findings = std::vector<Finding>;

}  // namespace zelt::ctl
