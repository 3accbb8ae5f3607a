// What a command needs from Windows while it runs: COM on its thread, and the preparation of guarded calls. There are no
// message boxes, since there may be nobody to answer them: Require throws where the main window would show one.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "system/outcome.h"

namespace zelt::ctl {

class Session {
public:
    Session();
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

private:
    const HRESULT initialized;
};

// Throws InputError with the text of a failure.
void Require(const Outcome& outcome);

// Convert between the system's UTF-16 text and the UTF-8 text of the command line and the output.
std::string Utf8(std::wstring_view text);
std::wstring Wide(std::string_view text);

}  // namespace zelt::ctl
