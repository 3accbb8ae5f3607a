// recording replay: makes the recorded calls of a component again, and compares what the component does.
#include <objbase.h>

#include <cstring>
#include <iterator>

#include "ctl/exports/session.h"
#include "ctl/recording/recording_file.h"
#include "ctl/recording/windows_recording_commands.h"
#include "guard/foreign_creation.h"
#include "packages/package_creation.h"
#include "packages/package_failure.h"
#include "packages/package_kinds.h"
#include "recording/call_tree.h"
#include "replay/session.h"
#include "system/narrow.h"

namespace zelt::ctl {
namespace {

using recording::KeptCall;
using recording::KeptComponent;

constexpr std::size_t kShown = 20;

// The class that a word names, as a class identifier or a ProgID.
CLSID ClassOf(const std::string& word)
{
    CLSID classId;
    if (FAILED(CLSIDFromString(Wide(word).c_str(), &classId))) {
        throw UsageError("\"" + word + "\" is neither a class identifier nor a registered name of a component");
    }
    return classId;
}

CLSID ClassOf(const KeptComponent& component)
{
    CLSID classId;
    if (component.classId.size() != sizeof classId) throw InputError("the recording has no class of its component");
    std::memcpy(&classId, component.classId.data(), sizeof classId);
    return classId;
}

// Creates the component of a recording, or another in its place, and keeps what has to live as long as the component.
class ComponentSource {
public:
    explicit ComponentSource(const Arguments& arguments) : name(arguments.Value("--package"))
    {
        if (const auto with = arguments.Value("--with")) replacement = ClassOf(*with);
    }

    ForeignPtr<IUnknown> Make(const KeptComponent& component)
    {
        const CLSID classId = replacement ? *replacement : ClassOf(component);
        if (component.kind == recording::kUnitOperation) return MakeUnit(classId);
        const PackageKindRow* const kind = FindPackageKind(static_cast<PackageKind>(component.kind));
        if (!kind) throw InputError("the recording is of a component of an unknown kind");
        ExportedPackage package;
        package.classId = classId;
        package.kind = kind->kind;
        package.sourceName = Wide(name ? *name : component.name);
        package.exportedName = Wide(component.exportedName);
        try {
            made = CreateBarePackage(kind->family, package);
            return ForeignPtr<IUnknown>(made.package.Detach());
        } catch (const PackageFailure& failure) {
            throw Refusal(failure.what());
        }
    }

private:
    static ForeignPtr<IUnknown> MakeUnit(REFCLSID classId)
    {
        void* made = nullptr;
        const HRESULT result = CreateForeign(classId, CLSCTX_ALL, IID_IUnknown, &made);
        if (FAILED(result))
            throw Refusal(std::string("the unit operation cannot be made: ") + com::Failure(result).what());
        return ForeignPtr<IUnknown>(static_cast<IUnknown*>(made));
    }

    const std::optional<std::string> name;
    std::optional<CLSID> replacement;
    BarePackage made;
};

// Shows the first differences, and counts all of them.
class Differences {
public:
    Differences(Output& out, std::size_t shown) : out(out), shown(shown) {}

    void Take(const replay::Finding& finding)
    {
        if (++count > shown) return;
        const KeptCall& call = finding.call;
        out << "call " << static_cast<long long>(call.number) << "  " << call.call.member << "  (" << call.call.object
            << "): " << finding.text << '\n';
    }
    std::size_t Count() const { return count; }
    std::size_t Hidden() const { return count - std::min(count, shown); }

private:
    Output& out;
    const std::size_t shown;
    std::size_t count = 0;
};

std::string Counted(std::uint64_t number, const char* one, const char* many)
{
    return std::to_string(number) + ' ' + (number == 1 ? one : many);
}

struct Played {
    std::uint64_t made, answered, early;
};

Played Play(RecordingFile& file, const Arguments& arguments, Differences& differences, bool& isClosed)
{
    const recording::HeaderRecord& header = file.ReadHeader();
    if (header.width != sizeof(void*) * 8) {
        throw Refusal(arguments.Operand(0) +
                      ": the component is of the other width, so the zeltctl of that width replays it");
    }
    const std::uint32_t codePage = header.codePage;
    recording::CallTreeReader calls(file.Records());
    ComponentSource source(arguments);
    replay::Session session(
        calls.Queries(), codePage, arguments.Number("--tolerance").value_or(0),
        [&](const KeptComponent& component) { return source.Make(component); },
        [&](const replay::Finding& finding) { differences.Take(finding); });
    bool isMade = false;
    while (const std::unique_ptr<KeptCall> call = calls.Next()) {
        if (calls.Component() && !isMade) session.Use(*calls.Component());
        isMade = calls.Component().has_value();
        session.Perform(*call);
    }
    isClosed = calls.IsClosed();
    return {session.Performed(), session.Answered(), session.TooEarly()};
}

}  // namespace

int ReplayRecording(const Arguments& arguments, Streams& streams)
{
    const ctl::Session session;
    const std::size_t runs = arguments.Count("--repeat", 1).value_or(1);
    Differences differences(streams.data, arguments.Count("--limit", 0).value_or(kShown));
    Played played{};
    int ending = kFine;
    for (std::size_t run = 0; run < runs; ++run) {
        RecordingFile file(arguments.Operand(0));
        bool isClosed = false;
        const Played one = Play(file, arguments, differences, isClosed);
        played = {played.made + one.made, played.answered + one.answered, played.early + one.early};
        if (run == 0) ending = file.ReportEnd(isClosed, streams.messages);
    }
    if (differences.Hidden() > 0) {
        streams.data << "... and " << Counted(differences.Hidden(), "more difference", "more differences") << '\n';
    }
    if (played.made == 0) throw Refusal(arguments.Operand(0) + ": the recording has no call that can be made again");
    if (played.early > 0) {
        streams.data << Counted(played.early, "call", "calls")
                     << " came before the component was made: not made again\n";
    }
    streams.data << Counted(played.made, "call", "calls") << " made again, "
                 << Counted(played.answered, "question", "questions") << " answered: ";
    streams.data << (differences.Count() == 0 ? "no difference"
                                              : Counted(differences.Count(), "difference", "differences"))
                 << '\n';
    return differences.Count() > 0 ? kFinding : ending;
}

}  // namespace zelt::ctl
