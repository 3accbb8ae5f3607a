#include "replay/recorded_package.h"

#include <cape-open.h>

#include <algorithm>
#include <cstdio>

#include "guard/fault_guard.h"
#include "recording/comparison.h"
#include "replay/call_frame.h"
#include "replay/error_text.h"
#include "replay/late_calls.h"
#include "replay/recorded_text.h"
#include "system/narrow.h"
#include "system/owners.h"

namespace zelt::replay {
namespace {

using recording::ArgumentRecord;
using recording::KeptCall;

// Whether two recorded calls have the same member, direction and inputs and, with `withOutcome`, the same outcome.
bool AreAlike(const KeptCall& one, const KeptCall& other, bool withOutcome)
{
    if (one.call.member != other.call.member || one.call.isOutward != other.call.isOutward) return false;
    if (withOutcome && one.result.status != other.result.status) return false;
    std::size_t at = 0;
    for (const ArgumentRecord& argument : one.arguments) {
        if (argument.isOut && !withOutcome) continue;
        while (at < other.arguments.size() && other.arguments[at].isOut && !withOutcome) ++at;
        if (at == other.arguments.size() || other.arguments[at].isOut != argument.isOut ||
            recording::Difference(argument.value, other.arguments[at].value, 0)) {
            return false;
        }
        ++at;
    }
    while (at < other.arguments.size() && other.arguments[at].isOut && !withOutcome) ++at;
    return at == other.arguments.size();
}

// Whether `other` made the same first `count` calls as `one`, with the same outcomes, and the same call after them.
bool BeginsAlike(const KeptCall& one, const KeptCall& other, std::size_t count)
{
    if (other.nested.size() <= count) return false;
    for (std::size_t i = 0; i < count; ++i) {
        if (!AreAlike(*one.nested[i], *other.nested[i], true)) return false;
    }
    return AreAlike(*one.nested[count], *other.nested[count], false);
}

// Puts a text or a number where the method's first argument points.
HRESULT Put(const com::DualMethod& method, void* words, const std::wstring& text)
{
    if (method.parameters.empty() || method.parameters[0].type != VT_BSTR || method.parameters[0].pointers != 1) {
        return E_NOTIMPL;
    }
    auto* const place = *static_cast<BSTR* const*>(method.parameters[0].Argument(words));
    if (!place) return E_POINTER;
    *place = SysAllocString(text.c_str());
    return *place ? S_OK : E_OUTOFMEMORY;
}

HRESULT Put(const com::DualMethod& method, void* words, std::uint32_t number)
{
    if (method.parameters.empty() || method.parameters[0].size != sizeof number || method.parameters[0].pointers != 1) {
        return E_NOTIMPL;
    }
    auto* const place = *static_cast<std::uint32_t* const*>(method.parameters[0].Argument(words));
    if (!place) return E_POINTER;
    *place = number;
    return S_OK;
}

}  // namespace

RecordedPackage::RecordedPackage(const std::wstring& path)
{
    const std::string shown = Narrow(path, CP_UTF8);
    const Owner<FILE*, std::fclose> file(_wfopen(path.c_str(), L"rb"));
    if (!file) throw std::runtime_error("The recording \"" + shown + "\" cannot be opened");
    recording::RecordReader records(
        [&](char* bytes, std::size_t count) { return std::fread(bytes, 1, count, file.get()); });
    const recording::Record* const first = records.Next();
    const auto* const header = first ? std::get_if<recording::HeaderRecord>(first) : nullptr;
    if (!header || header->version != recording::kFormatVersion) {
        throw std::runtime_error("\"" + shown + "\" is not a recording, or was made by a newer version");
    }
    if (header->width != sizeof(void*) * 8) {
        throw std::runtime_error("The recording \"" + shown +
                                 "\" was made by the other edition of ZELT (32 or 64 bit)");
    }
    codePage = header->codePage;
    recording::CallTreeReader reader(records);
    while (std::unique_ptr<KeptCall> call = reader.Next()) calls.push_back(std::move(call));
    if (!reader.Component())
        throw std::runtime_error("The recording \"" + shown + "\" is not a recording of a package");
    component = *reader.Component();
    queries = reader.Queries();
    for (const auto& call : calls) Index(*call);
}

RecordedPackage::~RecordedPackage()
{
    for (auto& [address, standIn] : standIns) standIn->Retire();
}

void RecordedPackage::Index(const KeptCall& call)
{
    for (const std::uint64_t pointer : {call.object.pointer, call.object.proxy}) {
        if (pointer != 0) objectNames[pointer] = call.call.object;
    }
    if (!call.call.isOutward && call.hasEnded) byMember[std::string(call.call.member)].push_back(&call);
    for (const auto& nested : call.nested) Index(*nested);
}

ForeignPtr<IUnknown> RecordedPackage::Package() { return StandIn(component.pointer, IID_IDispatch); }

ForeignPtr<IUnknown> RecordedPackage::StandIn(std::uint64_t address, REFIID iid)
{
    // A pointer that stands for an object of the simulator gives back that object.
    if (const ForeignPtr<IUnknown> own = simulators.FindPointer(address)) {
        ForeignPtr<IUnknown> face;
        if (SUCCEEDED(QueryForeign(own.Get(), iid, reinterpret_cast<void**>(face.Receive())))) return face;
    }
    auto& standIn = standIns[address];
    if (!standIn) standIn = new replay::StandIn(address, *this);
    return standIn->Face(iid);
}

bool RecordedPackage::Grants(const replay::StandIn& object, REFIID iid)
{
    // The proxy around the object asks for the object's name, and recordings do not contain that query.
    if (IsEqualIID(iid, __uuidof(ICapeIdentification))) return true;
    return queries.Answer(object.Address(), {reinterpret_cast<const char*>(&iid), sizeof iid}).value_or(false);
}

bool RecordedPackage::HasMember(const replay::StandIn& object, std::wstring_view name)
{
    return std::any_of(byMember.begin(), byMember.end(), [&](const auto& entry) {
        return IsUseOf(entry.first, name) &&
               std::any_of(entry.second.begin(), entry.second.end(),
                           [&](const KeptCall* call) { return object.IsOf(call->object); });
    });
}

const RecordedPackage::Calls& RecordedPackage::CallsOf(const com::DualMethod& method) const
{
    static const Calls kNone;
    auto found = byMember.find(method.name);
    if (found == byMember.end()) found = byMember.find(names.LoggedName(method));
    if (found == byMember.end() && IsLate(method.name)) {
        found = std::find_if(byMember.begin(), byMember.end(), [name = Widen(method.name)](const auto& entry) {
            return com::IsSameMemberName(Widen(entry.first), name);
        });
    }
    return found == byMember.end() ? kNone : found->second;
}

RecordedPackage::Calls RecordedPackage::Candidates(const replay::StandIn& object, const com::DualMethod& method,
                                                   const Inputs& inputs) const
{
    Calls candidates;
    for (const KeptCall* call : CallsOf(method)) {
        if (object.IsOf(call->object) && !inputs.DifferenceFrom(*call, 0)) candidates.push_back(call);
    }
    // First those that have not been repeated yet, in their order, then the others, beginning with the one repeated last.
    const auto lastUse = [this](const KeptCall* call) {
        const auto use = uses.find(call);
        return use == uses.end() ? 0 : use->second;
    };
    std::stable_sort(candidates.begin(), candidates.end(), [&](const KeptCall* one, const KeptCall* other) {
        const std::uint64_t a = lastUse(one), b = lastUse(other);
        if (a == 0 || b == 0) return a == 0 && b != 0;
        return a > b;
    });
    return candidates;
}

std::optional<std::string> RecordedPackage::CallSimulator(const KeptCall& call)
{
    const ForeignPtr<IUnknown> object = simulators.Find(call.object);
    const NamedMethod method = names.Find(call, queries);
    if (!object || !method) return "the simulator has not passed the object";
    ForeignPtr<IUnknown> target;
    HRESULT result = QueryForeign(object.Get(), method.interface_->iid, reinterpret_cast<void**>(target.Receive()));
    std::optional<std::string> difference;
    if (SUCCEEDED(result)) {
        CallFrame frame(method.Method(), call.arguments, *this);
        result = CallForeign([&] { return method.Call(target.Get(), frame.Words()); });
        if (SUCCEEDED(result)) {
            frame.Outputs([&](const ArgumentRecord& recorded, const recording::Value& actual) {
                if (!difference) difference = recording::Difference(recorded.value, actual, 0);
            });
        }
    }
    if (static_cast<std::uint32_t>(result) != call.result.status) return "another result";
    return difference;
}

const KeptCall* RecordedPackage::Perform(const Calls& candidates, const Inputs& inputs, std::string& reason)
{
    const KeptCall* current = candidates.front();
    inputs.LearnObjectsOf(*current, *this);
    for (std::size_t i = 0; i < current->nested.size(); ++i) {
        if (!current->nested[i]->call.isOutward) continue;
        const auto difference = CallSimulator(*current->nested[i]);
        if (!difference) continue;
        reason = "the simulator answers " + std::string(current->nested[i]->call.member) +
                 " differently than in the recording: " + *difference;
        const auto agrees = [&](const KeptCall* other) {
            if (other == current || !BeginsAlike(*current, *other, i)) return false;
            // The other call's pointers stand for the same objects.
            inputs.LearnObjectsOf(*other, *this);
            return !CallSimulator(*other->nested[i]);
        };
        const auto next = std::find_if(candidates.begin(), candidates.end(), agrees);
        if (next == candidates.end()) return nullptr;
        current = *next;
    }
    return current;
}

// What recordings do not contain, but users of a package ask for: its objects' names, and the particulars of a failure.
std::optional<HRESULT> RecordedPackage::AnswerByItself(const replay::StandIn& object, const com::DualMethod& method,
                                                       void* words) const
{
    if (method.name == "ICapeIdentification::get_ComponentName") {
        const auto name = objectNames.find(object.Address());
        return Put(method, words, name == objectNames.end() ? L"" : WidenRecorded(name->second, codePage));
    }
    if (method.name == "ICapeIdentification::put_ComponentName") return S_OK;
    if (method.name == "ECapeRoot::get_name") return Put(method, words, failure.name);
    if (method.name == "ECapeUser::get_description") return Put(method, words, failure.description);
    if (method.name == "ECapeUser::get_code") return Put(method, words, failure.status);
    if (method.name.starts_with("ECape")) return Put(method, words, std::wstring());
    return {};
}

HRESULT RecordedPackage::Refuse(const com::DualMethod& method, const std::string& reason)
{
    std::string text = "The recording has no answer to " + method.name;
    if (!reason.empty()) text += ": " + reason;
    failure = {static_cast<std::uint32_t>(kNoAnswer), L"ECapeUnknown", Widen(text, CP_UTF8)};
    isRefusal = true;
    SetErrorText(failure.description);
    return kNoAnswer;
}

HRESULT RecordedPackage::Answer(replay::StandIn& object, const com::DualMethod& method, void* words)
{
    try {
        return Repeat(object, method, words);
    } catch (const Unplayable& reason) {
        return Refuse(method, reason.what());
    }
}

HRESULT RecordedPackage::Repeat(const replay::StandIn& object, const com::DualMethod& method, void* words)
{
    // The particulars of a refusal are in no recording; those of other failures may be.
    if (isRefusal && method.name.starts_with("ECape")) {
        if (const auto own = AnswerByItself(object, method, words)) return *own;
    }
    const Inputs inputs(method, words);
    const Calls candidates = Candidates(object, method, inputs);
    if (candidates.empty()) {
        if (const auto own = AnswerByItself(object, method, words)) return *own;
        return Refuse(method, {});
    }
    std::string reason;
    const KeptCall* const performed = Perform(candidates, inputs, reason);
    if (!performed) return Refuse(method, reason);
    uses[performed] = ++repeated;
    const auto status = static_cast<HRESULT>(performed->result.status);
    if (FAILED(status)) {
        failure = {performed->result.status, WidenRecorded(performed->result.name, codePage),
                   WidenRecorded(performed->result.description, codePage)};
        isRefusal = false;
        SetErrorText(failure.description);
        return status;
    }
    const HRESULT given = GiveOutputs(method, *performed, words, *this);
    return FAILED(given) ? given : status;
}

}  // namespace zelt::replay
