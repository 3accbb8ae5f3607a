// The interfaces of the standard's library that no line of proxied_methods.txt describes. Their rows are made from the library
// alone, which gives the names and types of the arguments.
#pragma once

#include <vector>

#include "interface_shape.h"
#include "method_table.h"

namespace zelt::test {

// Every dual interface of the type libraries in this module's resources, in their order.
std::vector<const InterfaceShape*> AllInterfaces();

// Whether proxies of every class carry the interface via rows. False for ICapeCollection, although the table has rows for it:
// only the classes of collections know what kind of object they hold.
bool HasRows(const InterfaceShape& shape, const std::vector<TableClass>& table);

// Whether proxies never offer the interface.
bool IsWithheld(const InterfaceShape& shape);

TableRow LibraryRow(const InterfaceShape& shape, const MethodShape& method);

// The members of all interfaces without rows that proxies offer, as if they were those of one class.
TableClass LibraryClass(const std::vector<TableClass>& table);

}  // namespace zelt::test
