// The arguments of a call that is made again, as they lie on the stack: the recorded inputs, and room for the outputs.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "replay/values.h"

namespace zelt::replay {

class CallFrame {
public:
    // Throws Unplayable when the recording lacks an input of the method, or when a type cannot be replayed.
    CallFrame(const com::DualMethod& method, const std::vector<recording::ArgumentRecord>& recorded, Objects& objects);
    ~CallFrame();
    CallFrame(const CallFrame&) = delete;
    CallFrame& operator=(const CallFrame&) = delete;

    const void* Words() const { return words.data(); }

    // Call it after a success. Passes each output that was recorded to `take(recorded, actual)`, and learns the objects that
    // came back.
    void Outputs(
        const std::function<void(const recording::ArgumentRecord& recorded, const recording::Value& actual)>& take);

private:
    struct Cell {
        const com::DualParameter* parameter;
        void* place;  // of the value
    };
    void* Room(std::size_t bytes);
    void Fill(const com::DualMethod& method);
    void FreeCells();

    const std::vector<const recording::ArgumentRecord*> matched;
    Objects& objects;
    std::vector<void*> words;
    std::deque<std::vector<std::max_align_t>> rooms;
    std::vector<Cell> cells;  // one for each parameter
};

}  // namespace zelt::replay
