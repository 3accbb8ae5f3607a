// Which proxy class stands for each kind of object that crosses a proxy.
#pragma once

namespace zelt {

// Installs the table of wrappers and the rows of interface_rows.h. Call it once at start, before the first proxy is made.
void InstallWrappers();

}  // namespace zelt
