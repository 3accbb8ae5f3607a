// Stores all given options in the registry. Failures throw std::runtime_error.
#pragma once

#include <stdexcept>

#include "log/log_options.h"

namespace zelt::test {

inline void Store(const LogOptions& options)
{
    for (const LogOption option :
         {LogOption::AutoLogLocation, LogOption::PromptOpenLog, LogOption::PravikUnit, LogOption::LoadAfterInitNew,
          LogOption::HandBackOriginals, LogOption::KeepManager, LogOption::ForwardManagerEdit, LogOption::QueueCalls,
          LogOption::RecordCalls, LogOption::RecordUnlogged, LogOption::NotifyLog, LogOption::WriteDumps}) {
        if (!options.Save(option)) throw std::runtime_error("cannot store the options");
    }
}

}  // namespace zelt::test
