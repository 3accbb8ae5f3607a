// The real objects, those of the side that is not played, by the recorded pointers that they replace. A recording may use an
// address again: if the pointers of an object and of its proxy lead to different objects here, the one that was learnt last
// counts.
#pragma once

#include <cstdint>
#include <map>

#include "guard/foreign_call.h"
#include "recording/record.h"

namespace zelt::replay {

class KnownObjects {
public:
    // Replaces an earlier object with that pointer. An object that was made after its proxy has the pointer 0.
    void Learn(std::uint64_t pointer, IUnknown* object)
    {
        if (!object) return;
        HoldForeign(object);
        objects.insert_or_assign(pointer, Known{ForeignPtr<IUnknown>(object), ++order});
    }
    // Null when no object has come in its place.
    ForeignPtr<IUnknown> Find(const recording::ObjectRecord& recorded) const
    {
        const Known* const object = Find(recorded.pointer);
        const Known* const proxy = recorded.proxy == 0 ? nullptr : Find(recorded.proxy);
        const Known* const latest = !object || (proxy && proxy->order > object->order) ? proxy : object;
        return latest ? Held(latest->object.Get()) : ForeignPtr<IUnknown>();
    }
    ForeignPtr<IUnknown> FindPointer(std::uint64_t pointer) const
    {
        const Known* const known = Find(pointer);
        return known ? Held(known->object.Get()) : ForeignPtr<IUnknown>();
    }
    bool IsEmpty() const { return objects.empty(); }

private:
    struct Known {
        ForeignPtr<IUnknown> object;
        std::uint64_t order;
    };
    const Known* Find(std::uint64_t pointer) const
    {
        const auto found = objects.find(pointer);
        return found == objects.end() ? nullptr : &found->second;
    }
    static ForeignPtr<IUnknown> Held(IUnknown* object)
    {
        HoldForeign(object);
        return ForeignPtr<IUnknown>(object);
    }

    std::map<std::uint64_t, Known> objects;
    std::uint64_t order = 0;
};

}  // namespace zelt::replay
