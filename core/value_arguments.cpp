#include "core/value_arguments.h"

namespace zelt {

void WarnNullOutput(LogDocument& document, std::string_view name) { document.Write(Sentence::NullOutput, {name}); }

}  // namespace zelt
