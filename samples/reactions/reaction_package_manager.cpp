#include "samples/reactions/reaction_package_manager.h"

#include "samples/component/text.h"
#include "samples/component/variant.h"
#include "samples/reactions/reaction_package.h"

namespace zelt::sample {

STDMETHODIMP ReactionPackageManagerPart::GetListOfReactionsPackages(VARIANT* reactionIDS)
{
    return Call(L"GetListOfReactionsPackages", [&] {
        std::vector<std::wstring> names;
        for (const ReactionPackageDefinition& definition : AllReactionPackages()) names.emplace_back(definition.name);
        Return(reactionIDS, MakeStrings(names));
    });
}

STDMETHODIMP ReactionPackageManagerPart::ResolveReactionsPackage(BSTR reactionsPkg, IDispatch** reaction)
{
    if (!reaction) return E_POINTER;
    *reaction = nullptr;
    return Call(L"ResolveReactionsPackage", [&] {
        const ReactionPackageDefinition* definition = FindReactionPackage(TextOf(reactionsPkg));
        if (!definition) {
            throw CapeFailure(ECapeInvalidArgumentHR, L"There is no reaction package " + Quoted(TextOf(reactionsPkg)));
        }
        CheckCall(com::Create<ReactionPackage>(IID_IDispatch, reinterpret_cast<void**>(reaction), *definition), nullptr,
                  L"Reaction package");
    });
}

}  // namespace zelt::sample
