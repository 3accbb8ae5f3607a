// All that can escape from a package, each as an act that a fake commits (LastAct), with the line that the log shows for it.
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

// Each kind is committed once, under a guard alone, to see that it escapes and as what. Kinds that this processor or machine
// lacks are left out. The list stays as it is until the process ends.
const std::vector<FaultKind>& AllFaultKinds();

// One kind of each sort: a fault, an exception, a character string, an abort. No stack overflow: one takes 20 ms.
std::vector<const FaultKind*> OneFaultOfEachSort();

}  // namespace zelt::test
