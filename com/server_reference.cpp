#include "com/server_reference.h"

#include <atomic>

namespace com {
namespace {

std::atomic<long> count{0};

ServerReferenceFunctions functions{[] { ++count; }, [] { --count; }};

}  // namespace

void SetServerReferenceFunctions(const ServerReferenceFunctions& replacement) { functions = replacement; }

void AddServerReference() { functions.add(); }

void ReleaseServerReference() { functions.release(); }

long CountServerReferences() { return count; }

}  // namespace com
