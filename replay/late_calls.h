// Calls of members that no interface has (com/late_member.h), in the form of methods: each parameter points to a VARIANT. The
// arguments come first, then those that are passed by reference once more as outputs, and last the result. An output for which
// isIn is set, too, is passed as a reference to a variable of its own type, any other as a reference to a VARIANT.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <memory>
#include <string_view>
#include <vector>

#include "com/dual_interface.h"
#include "com/late_member.h"
#include "recording/call_tree.h"

namespace zelt::replay {

// Whether a recorded member is such a member.
bool IsLate(std::string_view member);

// Whether a recorded member is a use of the member with that name.
bool IsUseOf(std::string_view member, std::wstring_view name);

// IDispatch as an interface with one method, the recorded call's.
std::shared_ptr<const com::DualInterface> LateInterface(const recording::KeptCall& call);

// Calls a method that LateInterface describes: `words` point to the arguments, and to empty VARIANTs for the outputs. If the
// object describes its failure, the result is the failure's own code.
HRESULT CallLate(IDispatch& object, const com::DualMethod& method, const void* words);

// A call that an object receives through IDispatch::Invoke.
class LateCall {
public:
    // Copies the arguments. `parameters` and `result`, which may be null, must live longer than this object.
    LateCall(const com::LateMember& member, WORD flags, const DISPPARAMS* parameters, VARIANT* result);
    ~LateCall();
    LateCall(const LateCall&) = delete;
    LateCall& operator=(const LateCall&) = delete;

    const com::DualMethod& Method() const { return method; }
    void* Words() { return words.data(); }
    // Puts the outputs where the caller wants them. Fails if the type that a reference of the caller has does not fit.
    HRESULT GiveOutputs();

private:
    VARIANT& Add(bool isOut);

    com::DualMethod method;
    std::vector<std::unique_ptr<VARIANT>> cells;
    std::vector<VARIANT*> words;
    std::vector<const VARIANT*> references;  // the arguments passed by reference, in the order of their outputs
    VARIANT* const result;
};

// Makes the failure of a call the answer of IDispatch::Invoke: DISP_E_EXCEPTION, with the code, and the current error
// information's text, in `exception`, which may be null.
HRESULT ThrownAs(HRESULT failure, EXCEPINFO* exception);

}  // namespace zelt::replay
