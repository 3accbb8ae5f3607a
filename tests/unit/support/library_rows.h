// The interfaces of the standard's library that no line of proxied_methods.txt describes. Their rows follow from the library alone:
// each argument has its name and type there.
#pragma once

#include <vector>

#include "interface_shape.h"
#include "method_table.h"

namespace zelt::test {

// Every dual interface of the type libraries in this module's resources, in their order.
std::vector<const InterfaceShape*> AllInterfaces();

// Whether a proxy carries the interface by rows, whatever its class. Not a collection's: of what it holds, only the classes of
// collections know the kind.
bool HasRows(const InterfaceShape& shape, const std::vector<TableClass>& table);

// Whether proxies never offer the interface.
bool IsWithheld(const InterfaceShape& shape);

TableRow LibraryRow(const InterfaceShape& shape, const MethodShape& method);

// The members of all interfaces without rows that proxies offer, as if they were those of one class.
TableClass LibraryClass(const std::vector<TableClass>& table);

}  // namespace zelt::test
