// What server and client share besides the table of methods: the names of the objects that they pass as
// interface pointers, and a file that carries a reference from one process to the other.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <string>

namespace zelt::test {

inline constexpr wchar_t kServerThing[] = L"server thing";
inline constexpr wchar_t kClientThing[] = L"client thing";

// Whether the object returns this name.
bool HasName(IUnknown* object, const wchar_t* name);

// Whether `value` matches the argument's sample: an equal value, an object with that name, or an array of such objects
// with the sample's bounds.
struct TableStep;
bool IsSample(const TableStep& argument, std::size_t index, const VARIANT& value, const wchar_t* objectName);

// The file is never seen half-written. Any number of clients may read it while the server runs.
HRESULT WriteReference(const std::wstring& path, REFIID iid, IUnknown* object);
HRESULT ReadReference(const std::wstring& path, REFIID iid, void** object);

}  // namespace zelt::test
