#include "replay/call_frame.h"

#include <cstring>

namespace zelt::replay {

using com::DualParameter;
using recording::ArgumentRecord;

CallFrame::CallFrame(const com::DualMethod& method, const std::vector<ArgumentRecord>& recorded, Objects& objects)
    : matched(MatchArguments(method, recorded)), objects(objects), words(method.words, nullptr)
{
    try {
        Fill(method);
    } catch (...) {
        FreeCells();
        throw;
    }
}

CallFrame::~CallFrame() { FreeCells(); }

void CallFrame::Fill(const com::DualMethod& method)
{
    cells.reserve(method.parameters.size());
    for (std::size_t i = 0; i < method.parameters.size(); ++i) {
        const DualParameter& parameter = method.parameters[i];
        const bool isPlayable = parameter.pointers <= 1 && parameter.size > 0;
        if (!isPlayable) throw Unplayable("the argument \"" + parameter.name + "\" has a type that cannot be replayed");
        void* const place = Room(parameter.size);
        cells.push_back({&parameter, place});
        if (!parameter.isOut) {
            if (!matched[i]) throw Unplayable("the argument \"" + parameter.name + "\" was not recorded");
            Give(parameter, matched[i]->value, objects, place);
        }
        void** const word = &words[parameter.place];
        // Where the machine passes a value by the address of a copy, the cell is the copy.
        const bool isPassedHere = parameter.pointers == 0 && parameter.Argument(words.data()) == word;
        if (isPassedHere) {
            std::memcpy(word, place, parameter.size);
        } else {
            *word = place;
        }
    }
}

void CallFrame::FreeCells()
{
    for (const Cell& cell : cells) Free(*cell.parameter, cell.place);
}

void* CallFrame::Room(std::size_t bytes)
{
    return rooms.emplace_back(bytes / sizeof(std::max_align_t) + 1, std::max_align_t{}).data();
}

void CallFrame::Outputs(const std::function<void(const ArgumentRecord& recorded, const recording::Value& actual)>& take)
{
    std::deque<std::string> texts;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (!cells[i].parameter->isOut || !matched[i]) continue;
        LearnObjects(*cells[i].parameter, matched[i]->value, cells[i].place, objects);
        take(*matched[i], Capture(*cells[i].parameter, cells[i].place, texts));
    }
}

}  // namespace zelt::replay
