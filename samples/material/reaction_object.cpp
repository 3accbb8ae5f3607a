#include "samples/material/reaction_object.h"

#include "samples/component/text.h"
#include "samples/component/variant.h"

namespace zelt::sample {

STDMETHODIMP ReactionPropertiesPart::GetReactionProp(BSTR property, BSTR phase, VARIANT reacIds, BSTR basis,
                                                     VARIANT* propVals)
{
    return Call(L"GetReactionProp", [&] {
        std::vector<double> found;
        for (const std::wstring& id : ReadStrings(reacIds, L"reacIds")) {
            const auto value =
                values.find({Lower(TextOf(property)), Lower(TextOf(phase)), Lower(TextOf(basis)), Lower(id)});
            if (value == values.end()) {
                throw CapeFailure(ECapeThrmPropertyNotAvailableHR,
                                  L"The reaction object has no " + Quoted(TextOf(property)) + L" of " + Quoted(id));
            }
            found.push_back(value->second);
        }
        Return(propVals, MakeDoubles(found));
    });
}

STDMETHODIMP ReactionPropertiesPart::SetReactionProp(BSTR property, BSTR phase, VARIANT reacIds, BSTR basis,
                                                     VARIANT propVals)
{
    return Call(L"SetReactionProp", [&] {
        const std::vector<std::wstring> ids = ReadStrings(reacIds, L"reacIds");
        const std::vector<double> numbers = ReadDoubles(propVals, L"propVals");
        if (ids.size() != numbers.size()) {
            throw CapeFailure(ECapeInvalidArgumentHR, std::to_wstring(numbers.size()) + L" values were given for " +
                                                          std::to_wstring(ids.size()) + L" reactions");
        }
        for (std::size_t i = 0; i < ids.size(); ++i) {
            values[{Lower(TextOf(property)), Lower(TextOf(phase)), Lower(TextOf(basis)), Lower(ids[i])}] = numbers[i];
        }
    });
}

}  // namespace zelt::sample
