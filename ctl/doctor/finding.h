// What is wrong with an installation: one sentence, put together from what is wrong, what it causes and how it is mended.
#pragma once

#include <string>
#include <vector>

namespace zelt::ctl {

// What --fix does about a finding. Whatever it does leaves what others rely on as it is.
enum class Mend {
    None,
    Register,     // registers ZELT again
    LibraryFile,  // writes the file of a type library of the standard again
    RewriteList,  // writes the list of packages again, without the entries that cannot be read
};

struct Finding {
    std::string rule;    // one word, for programs
    std::string wrong;   // a clause that begins the sentence
    std::string effect;  // stands behind "so"
    std::string remedy;  // what to do, as one says it to somebody
    Mend mend = Mend::None;
};

using Findings = std::vector<Finding>;

}  // namespace zelt::ctl
