#include "samples/reactions/routine_part.h"

#include "samples/component/text.h"
#include "samples/component/variant.h"
#include "samples/reactions/reaction_properties.h"

namespace zelt::sample {
namespace {

// The requested reactions, which must take place in the phase; if none is requested, all reactions in the phase.
std::vector<const ReactionEntry*> Select(const ReactionModel& model, std::span<const std::wstring> ids,
                                         std::wstring_view phase)
{
    std::vector<const ReactionEntry*> selected;
    for (const std::wstring& id : ids) {
        selected.push_back(&model.ReactionOf(id));
        if (!SameName(selected.back()->Definition().phase, phase)) {
            throw CapeFailure(ECapeInvalidArgumentHR, L"Reaction " + Quoted(id) + L" is not in phase " + Quoted(phase));
        }
    }
    if (!ids.empty()) return selected;
    for (const ReactionEntry& entry : model.Reactions()) {
        if (SameName(entry.Definition().phase, phase)) selected.push_back(&entry);
    }
    if (selected.empty()) throw CapeFailure(ECapeInvalidArgumentHR, L"There is no reaction in phase " + Quoted(phase));
    return selected;
}

}  // namespace

STDMETHODIMP RoutinePart::CalcReactionProp(VARIANT props, BSTR phase, VARIANT reacIds, BSTR basis)
{
    return Call(L"CalcReactionProp", [&] {
        ICapeReactionProperties* results = model.ReactionObject();
        if (!TextOf(basis).empty() && !SameName(TextOf(basis), L"mole")) {
            throw CapeFailure(ECapeLimitedImplHR, L"Reactions are on a mole basis, not " + Quoted(TextOf(basis)));
        }
        const std::vector<std::wstring> names = ReadStrings(props, L"props");
        const std::vector<const ReactionEntry*> reactions =
            Select(model, ReadStrings(reacIds, L"reacIds"), TextOf(phase));
        const std::optional<double> standardPressure = model.StandardPressure();

        std::vector<std::wstring> ids;
        std::vector<std::vector<double>> values(names.size());
        for (const ReactionEntry* reaction : reactions) {
            ids.emplace_back(reaction->Definition().id);
            const PhaseState state = model.StateOf(reaction->Definition());
            for (std::size_t i = 0; i < names.size(); ++i) {
                values[i].push_back(FindReactionProperty(names[i]).calculate({*reaction, state, standardPressure}));
            }
        }
        for (std::size_t i = 0; i < names.size(); ++i) {
            CheckCall(results->SetReactionProp(MakeBstr(names[i]).GetBSTR(), phase, MakeStrings(ids), basis,
                                               MakeDoubles(values[i])),
                      results, L"Reaction object");
        }
        model.Host().Tell(2, L"reaction properties calculated");
    });
}

}  // namespace zelt::sample
