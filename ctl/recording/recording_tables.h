// A recording as the tables of a database.
#pragma once

#include <string>

#include "ctl/database/conversation_tables.h"

namespace zelt::ctl {

// Standard input does not count as a recording. Throws InputError when the file cannot be opened.
bool IsRecording(const std::string& path);

// False when the recording is cut off or damaged; `messages` then says where. Throws InputError.
bool FillFromRecording(const std::string& path, ConversationTables& tables, Output& messages);

}  // namespace zelt::ctl
