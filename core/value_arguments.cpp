#include "core/value_arguments.h"

namespace zelt {

void WarnNullOutput(LogDocument& document, const char* name) { document.Write(Sentence::NullOutput, {name}); }

}  // namespace zelt
