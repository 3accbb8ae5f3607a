#include "replay/session.h"

#include <cape-open.h>
#include <oleauto.h>

#include <algorithm>
#include <cstring>

#include "guard/se_exception.h"
#include "log/hr_name.h"
#include "recording/comparison.h"
#include "replay/call_frame.h"
#include "replay/error_text.h"
#include "replay/late_calls.h"
#include "replay/persistence.h"
#include "replay/recorded_text.h"
#include "system/narrow.h"

namespace zelt::replay {
namespace {

using com::DualParameter;
using recording::ArgumentRecord;
using recording::KeptCall;

std::string StatusText(HRESULT status) { return HRName(status); }

bool ClearsDirty(const KeptCall& call)
{
    return std::any_of(call.arguments.begin(), call.arguments.end(), [](const ArgumentRecord& argument) {
        return argument.name == "fClearDirty" && argument.value.integer != 0;
    });
}

// Whether the method has no outputs, so that a recorded call can answer a call with other inputs.
bool OnlyTells(const com::DualMethod& method)
{
    return std::none_of(method.parameters.begin(), method.parameters.end(),
                        [](const DualParameter& parameter) { return parameter.isOut; });
}

}  // namespace

Session::~Session()
{
    for (auto& [address, standIn] : standIns) standIn->Retire();
}

ForeignPtr<IUnknown> Session::StandIn(std::uint64_t address, REFIID iid)
{
    auto& standIn = standIns[address];
    if (!standIn) standIn = new replay::StandIn(address, *this);
    return standIn->Face(iid);
}

bool Session::Grants(const replay::StandIn& object, REFIID iid)
{
    const std::string_view interfaceId(reinterpret_cast<const char*>(&iid), sizeof iid);
    return queries.Answer(object.Address(), interfaceId).value_or(false);
}

void Session::Use(const recording::KeptComponent& component)
{
    const ForeignPtr<IUnknown> made = make(component);
    Learn(component.pointer, made.Get());
    Learn(0, made.Get());
}

void Session::Perform(const KeptCall& call)
{
    if (call.component) Use(*call.component);
    if (real.IsEmpty()) {
        ++tooEarly;
        return;
    }
    ++performed;
    // The recorded process ended in this call, or was ended. The call is made all the same, to see what the component does now.
    if (!call.hasEnded) Say(call, "the recording ends within this call");
    const ForeignPtr<IUnknown> object = real.Find(call.object);
    if (!object) return Say(call, "not made again: its object was not passed this time");
    PerformOn(call, object.Get());
}

void Session::PerformOn(const KeptCall& call, IUnknown* object)
{
    HRESULT result = S_OK;
    Active here(*this, call, false);
    try {
        if (IsPersistence(call.call.member)) {
            SavedState state = {ClearsDirty(call), call.result.stream, {}};
            result = CallComponent(call, [&] { return CallPersistence(call.call.member, object, state); });
            if (const auto difference = Difference(state)) Say(call, *difference);
        } else if (const NamedMethod method = names.Find(call, queries)) {
            result = Call(call, method, object);
        } else {
            throw Unplayable("no type library describes the member");
        }
        if (call.hasEnded) CompareResult(call, result);
    } catch (const Unplayable& reason) {
        Say(call, std::string("not made again: ") + reason.what());
        std::fill(here.isUsed.begin(), here.isUsed.end(), true);
    }
    ReportUnused(here);
}

template <class Body>
HRESULT Session::CallComponent(const KeptCall& call, Body&& body)
{
    HRESULT result = E_UNEXPECTED;
    try {
        result = Guarded(std::forward<Body>(body));
    } catch (const SE_Exception& fault) {
        Say(call, std::string("the component crashed: ") + fault.Text());
    } catch (const Unplayable&) {
        throw;
    } catch (const std::exception& thrown) {
        Say(call, std::string("the component threw an exception: ") + thrown.what());
    }
    SetErrorInfo(0, nullptr);
    return result;
}

// Makes the call and compares its outputs.
HRESULT Session::Call(const KeptCall& call, const NamedMethod& method, IUnknown* object)
{
    ForeignPtr<IUnknown> target;
    if (FAILED(QueryForeign(object, method.interface_->iid, reinterpret_cast<void**>(target.Receive())))) {
        return E_NOINTERFACE;
    }
    CallFrame frame(method.Method(), call.arguments, *this);
    const HRESULT result = CallComponent(call, [&] { return method.Call(target.Get(), frame.Words()); });
    if (FAILED(result)) return result;
    frame.Outputs([&](const ArgumentRecord& recorded, const recording::Value& actual) {
        if (const auto difference = recording::Difference(recorded.value, actual, tolerance)) {
            Say(call, "output \"" + std::string(recorded.name) + "\": " + *difference);
        }
    });
    return result;
}

void Session::CompareResult(const KeptCall& call, HRESULT result)
{
    const auto recorded = static_cast<HRESULT>(call.result.status);
    if (recorded != result) Say(call, "result: " + StatusText(result) + " instead of " + StatusText(recorded));
}

void Session::ReportUnused(const Active& done)
{
    for (std::size_t i = 0; i < done.isUsed.size(); ++i) {
        const KeptCall& nested = *done.call.nested[i];
        if (done.isUsed[i]) continue;
        if (nested.call.isOutward) {
            Say(nested, "the component did not make this call");
        } else {
            Say(nested, "not made again: it came in during a call of the component");
        }
    }
}

// The call within the active one that this call repeats: the first of the same object and member with the same inputs that has
// not been repeated yet. If the method has no outputs, the inputs may differ; the difference is reported.
const KeptCall* Session::FindAnswer(const replay::StandIn& object, const com::DualMethod& method, const Inputs& inputs)
{
    if (!active) return nullptr;
    std::optional<std::size_t> nearest;
    std::string difference;
    for (std::size_t i = 0; i < active->isUsed.size(); ++i) {
        const KeptCall& candidate = *active->call.nested[i];
        if (active->isUsed[i] || !candidate.call.isOutward || !object.IsOf(candidate.object)) continue;
        if (!names.IsOf(candidate, method, queries)) continue;
        const auto found = inputs.DifferenceFrom(candidate, tolerance);
        if (!found) {
            nearest = i;
            difference.clear();
            break;
        }
        if (!nearest && OnlyTells(method)) {
            nearest = i;
            difference = *found;
        }
    }
    if (!nearest) return nullptr;
    active->isUsed[*nearest] = true;
    const KeptCall& answer = *active->call.nested[*nearest];
    if (!difference.empty()) Say(answer, difference);
    inputs.LearnObjectsOf(answer, *this);
    return &answer;
}

bool Session::HasMember(const replay::StandIn& object, std::wstring_view name)
{
    if (!active) return false;
    return std::any_of(active->call.nested.begin(), active->call.nested.end(), [&](const auto& nested) {
        return nested->call.isOutward && object.IsOf(nested->object) && IsUseOf(nested->call.member, name);
    });
}

HRESULT Session::Answer(replay::StandIn& object, const com::DualMethod& method, void* words)
{
    const KeptCall* const recorded = FindAnswer(object, method, Inputs(method, words));
    if (!recorded) {
        if (active) Say(active->call, "the component made a call that is not in the recording: " + method.name);
        SetErrorText(L"The recording has no answer to " + Widen(method.name));
        return kNoAnswer;
    }
    ++answered;
    {
        // In the recording, the simulator called the component before it answered.
        const Active here(*this, *recorded, true);
        for (const auto& nested : recorded->nested) {
            if (!nested->call.isOutward) Perform(*nested);
        }
    }
    const auto status = static_cast<HRESULT>(recorded->result.status);
    if (FAILED(status)) {
        SetErrorText(WidenRecorded(recorded->result.description, codePage));
        return status;
    }
    const HRESULT given = GiveOutputs(method, *recorded, words, *this);
    return FAILED(given) ? given : status;
}

}  // namespace zelt::replay
