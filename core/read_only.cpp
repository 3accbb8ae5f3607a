#include "core/read_only.h"

namespace zelt {

void ChangesObject::Describe(LoggedCall& call) const
{
    LogDocument* log = call.Document();
    if (log && call.Proxy().IsReadOnly()) log->Write(Sentence::ReadOnlyObject);
}

}  // namespace zelt
