// Rows like those of proxied_methods.txt, for the dual interfaces of this module's type libraries. They are made from the
// libraries alone, which give the names and types of the arguments.
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

// The members of all interfaces that proxies carry without rows, except IOriginalObject, as if they were those of one class.
TableClass LibraryClass(const std::vector<TableClass>& table);

}  // namespace zelt::test
