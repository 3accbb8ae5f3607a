// Faults and exceptions that can escape from a package, each as an act that a fake commits (LastAct), with the error text
// that the log has for it.
#pragma once

#include <string>
#include <vector>

#include "dynamic_fake.h"

namespace zelt::test {

struct FaultKind {
    std::string name;
    LastAct act;
    std::string logged;  // the text of the error
};

// The first call commits each kind once, under the fault guard alone, to see what escapes. Omits kinds that cannot happen
// on this machine. The list does not change until the process ends.
const std::vector<FaultKind>& AllFaultKinds();

// One kind of each sort: a fault, an exception, a character string, an abort. No stack overflow, because it is slow.
std::vector<const FaultKind*> OneFaultOfEachSort();

}  // namespace zelt::test
