#include "replay/inputs.h"

#include <cstring>

#include "recording/comparison.h"

namespace zelt::replay {

using com::DualParameter;
using recording::KeptCall;

namespace {

// The place of the value that an argument is or points to; null for a null pointer.
const void* PlaceOf(const DualParameter& parameter, const void* words)
{
    const void* place = parameter.Argument(words);
    return parameter.pointers == 0 ? place : *static_cast<const void* const*>(place);
}

}  // namespace

Inputs::Inputs(const com::DualMethod& method, const void* words) : method(method), words(words)
{
    for (const DualParameter& parameter : method.parameters) {
        const bool isInput = !parameter.isOut && parameter.pointers <= 1;
        const void* const place = isInput ? PlaceOf(parameter, words) : nullptr;
        values.push_back(place ? Capture(parameter, place, texts) : recording::Value());
    }
}

std::optional<std::string> Inputs::DifferenceFrom(const KeptCall& recorded, double tolerance) const
{
    const auto arguments = MatchArguments(method, recorded.arguments);
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (method.parameters[i].isOut || !arguments[i]) continue;
        if (const auto difference = recording::Difference(arguments[i]->value, values[i], tolerance)) {
            return "input \"" + std::string(arguments[i]->name) + "\": " + *difference;
        }
    }
    return {};
}

void Inputs::LearnObjectsOf(const KeptCall& recorded, Objects& objects) const
{
    const auto arguments = MatchArguments(method, recorded.arguments);
    for (std::size_t i = 0; i < values.size(); ++i) {
        const DualParameter& parameter = method.parameters[i];
        const bool isPassed = !parameter.isOut && arguments[i] && parameter.pointers <= 1;
        const void* const place = isPassed ? PlaceOf(parameter, words) : nullptr;
        if (place) LearnObjects(parameter, arguments[i]->value, place, objects);
    }
}

HRESULT GiveOutputs(const com::DualMethod& method, const KeptCall& recorded, void* words, Objects& objects)
{
    const auto arguments = MatchArguments(method, recorded.arguments);
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const DualParameter& parameter = method.parameters[i];
        if (!parameter.isOut || parameter.pointers != 1) continue;
        void* const place = const_cast<void*>(PlaceOf(parameter, words));
        if (!place) return E_POINTER;
        std::memset(place, 0, parameter.size);
        if (arguments[i]) Give(parameter, arguments[i]->value, objects, place);
    }
    return S_OK;
}

}  // namespace zelt::replay
