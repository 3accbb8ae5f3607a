// The C++ exception that a guarded call throws for a hardware fault, and for any other structured exception that is neither a
// foreign C++ exception nor the trap's (abort_trap.h). It carries the system's code. The texts are constants, and part of the
// log format.
#pragma once

#include <windows.h>

#include <exception>

namespace zelt {

class SE_Exception final : public std::exception {
public:
    explicit SE_Exception(DWORD code) noexcept : code(code) {}

    DWORD Code() const { return code; }

    // Never null. All codes that the table lacks have the same text, which does not show the code.
    const char* Text() const;
    const char* what() const noexcept override { return Text(); }

private:
    DWORD code;
};

}  // namespace zelt
