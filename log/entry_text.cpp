#include "log/entry_text.h"

#include <algorithm>

namespace zelt {

// Makes room for `needed` more characters.
void EntryText::Grow(std::size_t needed)
{
    const std::size_t size = Size(), room = static_cast<std::size_t>(limit - text.get());
    const std::size_t grown = std::max(2 * room, size + needed);
    std::unique_ptr<char[]> larger(new char[grown]);
    if (size != 0) std::memcpy(larger.get(), text.get(), size);
    // The old memory is freed last: nothing may be half changed if a fault, such as a stack overflow, interrupts that.
    text.swap(larger);
    end = text.get() + size;
    limit = text.get() + grown;
}

}  // namespace zelt
