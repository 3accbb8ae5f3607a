// A stack that reuses the memory of removed elements: a log may have millions of calls, but few are open at once. A pushed
// element may still have the contents of a removed one.
#pragma once

#include <cstddef>
#include <vector>

namespace zelt::ctl {

template <class T>
class ReusedStack {
public:
    T& Push()
    {
        if (count == all.size()) all.emplace_back();
        return all[count++];
    }
    void Pop() { --count; }
    // Removes the topmost elements until there are no more than `most`.
    void ShrinkTo(std::size_t most)
    {
        if (count > most) count = most;
    }

    bool IsEmpty() const { return count == 0; }
    std::size_t Size() const { return count; }
    T& Top() { return all[count - 1]; }
    const T& Top() const { return all[count - 1]; }
    const T* begin() const { return all.data(); }
    const T* end() const { return all.data() + count; }

private:
    std::vector<T> all;
    std::size_t count = 0;  // of those on the stack
};

}  // namespace zelt::ctl
