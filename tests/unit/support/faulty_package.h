// What the guard's tests share: the two bad packages, loaded once and kept, a guarded call that returns how it ended,
// and the processor state that a fault must not change.
#pragma once

#include <string>

#include "guard/fault_guard.h"
#include "tests/unit/guard/faulty_dll/faulty.h"

namespace zelt::tests {

enum class End { Returned, Fault, ThrownText, Foreign, Text, RuntimeError, Number };

struct CallEnd {
    End end;
    HRESULT result = 0;
    DWORD code = 0;
    std::string text;
};

// Null if the DLL cannot be loaded. The static package is always loaded first: on i686, if the process already contains
// the shared libgcc, a package with static runtime libraries registers its frames there and can no longer catch its own
// exceptions.
faulty::Misbehave StaticPackage();
faulty::Misbehave SharedPackage();

struct Package {
    const char* name;
    faulty::Misbehave misbehave;
};

struct Packages {
    Package all[2] = {{"static", StaticPackage()}, {"shared", SharedPackage()}};
    const Package* begin() const { return all; }
    const Package* end() const { return all + 2; }
};

template <class Call>
CallEnd CallGuarded(Call&& call)
{
    try {
        return {End::Returned, Guarded(call), 0, {}};
    } catch (const SE_Exception& fault) {
        return {End::Fault, E_UNEXPECTED, fault.Code(), fault.Text()};
    } catch (const ThrownText& text) {
        return {End::ThrownText, E_UNEXPECTED, 0, text.Text()};
    } catch (const char* text) {
        return {End::Text, E_UNEXPECTED, 0, text};
    } catch (const ForeignException&) {
        return {End::Foreign, E_UNEXPECTED, 0, {}};
    } catch (const std::exception& error) {
        return {End::RuntimeError, E_UNEXPECTED, 0, error.what()};
    } catch (int number) {
        return {End::Number, E_UNEXPECTED, static_cast<DWORD>(number), {}};
    }
}

inline CallEnd CallGuarded(faulty::Misbehave misbehave, const faulty::Order& order)
{
    return CallGuarded([&] { return misbehave(&order); });
}

// Whether the package still works.
inline bool AnswersAgain(faulty::Misbehave misbehave)
{
    const CallEnd end = CallGuarded(misbehave, {faulty::Deed::Return});
    return end.end == End::Returned && end.result == faulty::kDone;
}

struct ProcessorState {
    unsigned x87Control = 0;
    unsigned x87Tags = 0;
    unsigned sseControl = 0;
    bool directionFlag = false;
    void* exceptionChain = nullptr;  // on i686 only
    void* stack = nullptr;

    static ProcessorState Now();
    bool operator==(const ProcessorState&) const = default;
};

}  // namespace zelt::tests
