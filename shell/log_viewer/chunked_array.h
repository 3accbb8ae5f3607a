// An array that grows to many millions of elements without moving them. Growing needs neither one contiguous block for all
// elements nor room for a second copy of them. Does not shrink.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace zelt {

template <class T>
class ChunkedArray {
public:
    std::size_t Size() const { return size; }
    T& operator[](std::size_t index) { return chunks[index >> kBits][index & kMask]; }
    const T& operator[](std::size_t index) const { return chunks[index >> kBits][index & kMask]; }

    // Throws std::bad_alloc, leaving the array as it was.
    void Add(const T& value)
    {
        if ((size & kMask) == 0 && size >> kBits == chunks.size()) {
            chunks.push_back(std::unique_ptr<T[]>(new T[kMask + 1]));
        }
        chunks[size >> kBits][size & kMask] = value;
        ++size;
    }

private:
    static constexpr std::size_t kBits = 14;
    static constexpr std::size_t kMask = (std::size_t{1} << kBits) - 1;

    std::vector<std::unique_ptr<T[]>> chunks;
    std::size_t size = 0;
};

}  // namespace zelt
