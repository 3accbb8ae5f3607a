#include "fault_kinds.h"

#include <algorithm>
#include <deque>

#include "samples/faulty/faults.h"
#include "tests/unit/guard/fault_rows.h"
#include "tests/unit/support/faulty_package.h"

namespace zelt::test {
namespace {

using faulty::Deed;
using faulty::Order;
using tests::CallEnd;
using tests::End;

struct Crime {
    faulty::Misbehave misbehave;
    Order order;
};

HRESULT Commit(const void* what)
{
    const auto* crime = static_cast<const Crime*>(what);
    return crime->misbehave(&crime->order);
}

HRESULT CommitFromMenu(const void* what)
{
    sample::CommitFault(static_cast<const wchar_t*>(what));
    return S_OK;
}

std::string LoggedText(const CallEnd& outcome)
{
    switch (outcome.end) {
        case End::Fault: return "Uncaught SEH exception during function call: " + outcome.text;
        case End::ThrownText:
        case End::Text: return "Uncaught exception during function call: " + outcome.text;
        default: return "Uncaught exception during function call";
    }
}

struct KindRow {
    const char* name;
    Deed deed;
};

// clang-format off
constexpr KindRow kEscapes[] = {
    {"stack overflow",            Deed::StackOverflow},
    {"thrown string",             Deed::ThrowText},
    {"thrown mutable string",     Deed::ThrowMutableText},
    {"thrown runtime error",      Deed::ThrowRuntimeError},
    {"thrown number",             Deed::ThrowInt},
    {"terminate",                 Deed::Terminate},
    {"abort",                     Deed::Abort},
    {"universal runtime's abort", Deed::UniversalAbort},
};
// clang-format on

class Kinds {
public:
    Kinds()
    {
        for (const tests::Package& package : tests::Packages()) {
            const std::string prefix = std::string(package.name) + ": ";
            for (const tests::FaultRow& row : tests::kRealFaults) {
                if (tests::Exists(row.deed)) Add(prefix + row.name, package.misbehave, {row.deed});
            }
            for (const KindRow& row : kEscapes) Add(prefix + row.name, package.misbehave, {row.deed});
            for (const DWORD code : tests::kRaisedCodes) {
                Add(prefix + "raised " + std::to_string(code), package.misbehave, {Deed::Raise, code});
            }
        }
        Add("string of Microsoft's compiler", {CommitFromMenu, L"foreignCharString"});
    }
    const std::vector<FaultKind>& All() const { return kinds; }

private:
    void Add(const std::string& name, faulty::Misbehave misbehave, const Order& order)
    {
        crimes.push_back({misbehave, order});
        Add(name, {Commit, &crimes.back()});
    }
    void Add(const std::string& name, const LastAct& act)
    {
        const CallEnd outcome = tests::CallGuarded([&] { return act.act(act.what); });
        if (outcome.end == End::Returned) return;
        kinds.push_back({name, act, LoggedText(outcome)});
    }

    std::deque<Crime> crimes;  // the acts point to them
    std::vector<FaultKind> kinds;
};

}  // namespace

const std::vector<FaultKind>& AllFaultKinds()
{
    static const Kinds& kinds = *new Kinds;
    return kinds.All();
}

std::vector<const FaultKind*> OneFaultOfEachSort()
{
    std::vector<const FaultKind*> chosen;
    for (const char* name :
         {"static: write to null", "static: thrown runtime error", "shared: thrown string", "static: abort"}) {
        const auto& all = AllFaultKinds();
        const auto found =
            std::find_if(all.begin(), all.end(), [name](const FaultKind& kind) { return kind.name == name; });
        if (found == all.end()) throw std::logic_error(std::string("no fault is called ") + name);
        chosen.push_back(&*found);
    }
    return chosen;
}

}  // namespace zelt::test
