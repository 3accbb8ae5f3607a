#include "replay/session.h"

#include <cape-open.h>
#include <oleauto.h>

#include <algorithm>
#include <cstring>

#include "guard/se_exception.h"
#include "log/hr_name.h"
#include "recording/comparison.h"
#include "replay/call_frame.h"
#include "replay/persistence.h"
#include "system/narrow.h"

namespace zelt::replay {
namespace {

using com::DualParameter;
using recording::ArgumentRecord;
using recording::KeptCall;

// The result of a question that the recording has no answer to.
constexpr HRESULT kNoAnswer = static_cast<HRESULT>(ECapeUnknownHR);

std::string StatusText(HRESULT status) { return HRName(status); }

// For the component, which may show it to its user.
void SetNoAnswer(const std::string& member)
{
    Microsoft::WRL::ComPtr<ICreateErrorInfo> making;
    Microsoft::WRL::ComPtr<IErrorInfo> made;
    if (FAILED(CreateErrorInfo(&making))) return;
    std::wstring text = L"The recording has no answer to " + Widen(member);
    making->SetDescription(text.data());
    if (SUCCEEDED(making.As(&made))) SetErrorInfo(0, made.Get());
}

// A recorded call has no outputs to give, so that a call with other inputs can be taken for it.
bool OnlyTells(const com::DualMethod& method)
{
    return std::none_of(method.parameters.begin(), method.parameters.end(),
                        [](const DualParameter& parameter) { return parameter.isOut; });
}

// The place of a value that an argument is or leads to; null when there is none.
const void* PlaceOf(const DualParameter& parameter, const void* words)
{
    const void* place = parameter.Argument(words);
    return parameter.pointers == 0 ? place : *static_cast<const void* const*>(place);
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
    const bool isOfItsOwn =
        !IsEqualIID(iid, IID_NULL) && !IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IDispatch);
    if (isOfItsOwn) standIn->Offer(iid);
    void* face = nullptr;
    if (FAILED(standIn->QueryInterface(iid, &face))) com::Check(standIn->QueryInterface(IID_IDispatch, &face));
    return ForeignPtr<IUnknown>(static_cast<IUnknown*>(face));
}

void Session::Learn(std::uint64_t address, IUnknown* object)
{
    if (address == 0 || !object) return;
    HoldForeign(object);
    real.insert_or_assign(address, Known{ForeignPtr<IUnknown>(object), ++learned});
}

bool Session::Grants(const replay::StandIn& object, REFIID iid)
{
    const std::string_view interfaceId(reinterpret_cast<const char*>(&iid), sizeof iid);
    return queries.Answer(object.Address(), interfaceId).value_or(false);
}

void Session::Use(const recording::KeptComponent& component)
{
    ForeignPtr<IUnknown> made = make(component);
    Learn(component.pointer, made.Get());
    real.insert_or_assign(0, Known{std::move(made), ++learned});
}

void Session::Perform(const KeptCall& call)
{
    if (call.component) Use(*call.component);
    if (real.empty()) {
        ++tooEarly;
        return;
    }
    ++performed;
    // The recorded process ended in this call, or was ended. What the component does now shows all the same.
    if (!call.hasEnded) Say(call, "the recording ends within this call");
    IUnknown* const known = RealObject(call.object);
    if (!known) return Say(call, "not made again: its object did not come in this time");
    HoldForeign(known);
    const ForeignPtr<IUnknown> object(known);
    PerformOn(call, object.Get());
}

IUnknown* Session::RealObject(const recording::ObjectRecord& recorded) const
{
    const auto object = real.find(recorded.pointer), proxy = real.find(recorded.proxy);
    const bool isNewer = proxy != real.end() && recorded.proxy != 0 &&
                         (object == real.end() || proxy->second.order > object->second.order);
    if (isNewer) return proxy->second.object.Get();
    return object == real.end() ? nullptr : object->second.object.Get();
}

void Session::PerformOn(const KeptCall& call, IUnknown* object)
{
    HRESULT result = S_OK;
    Active here{call, std::vector<bool>(call.nested.size(), false), active};
    active = &here;
    try {
        if (IsPersistence(call.call.member)) {
            result = CallComponent(call, [&] { return CallPersistence(call.call.member, object); });
        } else if (const NamedMethod method = names.Find(call.call.member)) {
            result = Call(call, method, object);
        } else {
            throw Unplayable("no type library describes the member");
        }
        if (call.hasEnded) CompareResult(call, result);
    } catch (const Unplayable& reason) {
        Say(call, std::string("not made again: ") + reason.what());
        std::fill(here.isUsed.begin(), here.isUsed.end(), true);
    }
    active = here.outer;
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
    const HRESULT result = CallComponent(
        call, [&] { return com::CallDual(target.Get(), method.number, frame.Words(), method.Method().words); });
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
            Say(nested, "not made again: it came in while the component worked");
        }
    }
}

// The call within the active one that this call repeats: the first that was not yet repeated, of the same object and member with
// the same inputs; when the call only tells something, with any inputs, whose differences are reported.
const KeptCall* Session::FindAnswer(const replay::StandIn& object, const com::DualMethod& method, void* words)
{
    if (!active) return nullptr;
    std::deque<std::string> texts;
    std::vector<recording::Value> inputs;
    for (const DualParameter& parameter : method.parameters) {
        const bool isInput = !parameter.isOut && parameter.pointers <= 1;
        const void* const place = isInput ? PlaceOf(parameter, words) : nullptr;
        inputs.push_back(place ? Capture(parameter, place, texts) : recording::Value());
    }
    const KeptCall* nearest = nullptr;
    std::size_t nearestPlace = 0;
    std::string nearestDifference;
    for (std::size_t i = 0; i < active->isUsed.size(); ++i) {
        const KeptCall& candidate = *active->call.nested[i];
        const bool isOfObject = candidate.object.pointer == 0 || candidate.object.pointer == object.Address() ||
                                candidate.object.proxy == object.Address();
        if (active->isUsed[i] || !candidate.call.isOutward || !isOfObject) continue;
        const NamedMethod known = names.Find(candidate.call.member);
        if (!known || &known.Method() != &method) continue;
        const auto recorded = MatchArguments(method, candidate.arguments);
        std::string difference;
        for (std::size_t p = 0; p < inputs.size() && difference.empty(); ++p) {
            if (method.parameters[p].isOut || !recorded[p]) continue;
            if (const auto found = recording::Difference(recorded[p]->value, inputs[p], tolerance)) {
                difference = "input \"" + std::string(recorded[p]->name) + "\": " + *found;
            }
        }
        if (difference.empty()) {
            active->isUsed[i] = true;
            nearest = &candidate;
            nearestDifference.clear();
            break;
        }
        if (!nearest && OnlyTells(method)) {
            nearest = &candidate;
            nearestPlace = i;
            nearestDifference = difference;
        }
    }
    if (!nearestDifference.empty()) {
        active->isUsed[nearestPlace] = true;
        Say(*nearest, nearestDifference);
    }
    if (nearest) {
        // The objects that the component passed.
        const auto recorded = MatchArguments(method, nearest->arguments);
        for (std::size_t p = 0; p < inputs.size(); ++p) {
            const DualParameter& parameter = method.parameters[p];
            const void* const place = parameter.isOut || !recorded[p] ? nullptr : PlaceOf(parameter, words);
            if (place) LearnObjects(parameter, recorded[p]->value, place, *this);
        }
    }
    return nearest;
}

HRESULT Session::Answer(replay::StandIn& object, const com::DualMethod& method, void* words)
{
    const KeptCall* const recorded = FindAnswer(object, method, words);
    if (!recorded) {
        if (active) Say(active->call, "the component asked what it did not ask then: " + method.name);
        SetNoAnswer(method.name);
        return kNoAnswer;
    }
    ++answered;
    // The simulator called the component before it answered.
    Active here{*recorded, std::vector<bool>(recorded->nested.size(), false), active};
    active = &here;
    for (std::size_t i = 0; i < recorded->nested.size(); ++i) {
        here.isUsed[i] = true;
        if (!recorded->nested[i]->call.isOutward) Perform(*recorded->nested[i]);
    }
    active = here.outer;
    const auto status = static_cast<HRESULT>(recorded->result.status);
    if (FAILED(status)) return status;
    const auto arguments = MatchArguments(method, recorded->arguments);
    for (std::size_t p = 0; p < arguments.size(); ++p) {
        const DualParameter& parameter = method.parameters[p];
        if (!parameter.isOut || parameter.pointers != 1) continue;
        void* const place = const_cast<void*>(PlaceOf(parameter, words));
        if (!place) return E_POINTER;
        std::memset(place, 0, parameter.size);
        if (arguments[p]) Give(parameter, arguments[p]->value, *this, place);
    }
    return status;
}

}  // namespace zelt::replay
