// A component that answers from a recording, without the component that was recorded. Its objects are stand-ins. They repeat
// the calls that the recorded objects made to the simulator's objects. A call is answered like a recorded call of the same
// object and member with the same inputs: the first that has not been repeated yet, or else the one repeated last. While it
// repeats a calculation, the package reads the simulator's material. If an answer differs from the recorded one, the package
// switches to another recorded call that agrees with all the answers up to then. A call that the recording has no answer to
// fails with ECapeUnknown, and the error information says so; only names and the particulars of failures are answered without
// the recording.
#pragma once

#include <windows.h>
#include <unknwn.h>

#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include <wrl/client.h>

#include "recording/call_tree.h"
#include "replay/inputs.h"
#include "replay/interface_names.h"
#include "replay/known_objects.h"
#include "replay/stand_in.h"

namespace zelt::replay {

class RecordedPackage final : Objects, Answers {
public:
    // Reads the whole recording. Throws std::runtime_error, with a text for the user, when the file cannot be opened, is not a
    // recording, does not say which component was recorded, or was made by a newer version or by the ZELT of the other width.
    explicit RecordedPackage(const std::wstring& path);
    ~RecordedPackage();
    RecordedPackage(const RecordedPackage&) = delete;
    RecordedPackage& operator=(const RecordedPackage&) = delete;

    // What was recorded.
    const recording::KeptComponent& Component() const { return component; }
    // The package. It answers for as long as this object lives.
    ForeignPtr<IUnknown> Package();

private:
    using Calls = std::vector<const recording::KeptCall*>;

    // The error of the latest call that failed.
    struct Failure {
        std::uint32_t status = 0;
        std::wstring name, description;
    };

    ForeignPtr<IUnknown> StandIn(std::uint64_t address, REFIID iid) override;
    void Learn(std::uint64_t address, IUnknown* object) override { simulators.Learn(address, object); }
    bool Grants(const replay::StandIn& object, REFIID iid) override;
    bool HasMember(const replay::StandIn& object, std::wstring_view name) override;
    HRESULT Answer(replay::StandIn& object, const com::DualMethod& method, void* words) override;

    void Index(const recording::KeptCall& call);
    // Answers as a recorded call was answered, or else by itself, or refuses. Throws Unplayable.
    HRESULT Repeat(const replay::StandIn& object, const com::DualMethod& method, void* words);
    // All calls of the method, whatever their object and inputs.
    const Calls& CallsOf(const com::DualMethod& method) const;
    // The recorded calls that can answer this call, the best first.
    Calls Candidates(const replay::StandIn& object, const com::DualMethod& method, const Inputs& inputs) const;
    // Makes the first candidate's calls to the simulator's objects, and switches to another candidate when the answers differ
    // from the recorded ones. Returns the candidate that agrees with the answers; null, with the reason, when none does.
    const recording::KeptCall* Perform(const Calls& candidates, const Inputs& inputs, std::string& reason);
    // Makes one call to the simulator's object. Returns the difference from the recorded outcome.
    std::optional<std::string> CallSimulator(const recording::KeptCall& call);
    std::optional<HRESULT> AnswerByItself(const replay::StandIn& object, const com::DualMethod& method,
                                          void* words) const;
    HRESULT Refuse(const com::DualMethod& method, const std::string& reason);

    recording::KeptComponent component;
    std::uint32_t codePage = 0;  // of names and failures
    recording::KeptQueries queries;
    std::vector<std::unique_ptr<recording::KeptCall>> calls;
    std::unordered_map<std::string, Calls> byMember;
    std::map<const recording::KeptCall*, std::uint64_t> uses;  // the order in which calls were last repeated
    std::uint64_t repeated = 0;
    std::map<std::uint64_t, std::string> objectNames;  // by pointer
    InterfaceNames names;
    KnownObjects simulators;
    std::map<std::uint64_t, Microsoft::WRL::ComPtr<replay::StandIn>> standIns;
    Failure failure;
    bool isRefusal = false;  // the failure is not from the recording
};

}  // namespace zelt::replay
