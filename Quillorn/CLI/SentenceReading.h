#pragma once

#include "CLI/Session.h"
#include "Models/TaskNames.h"

#include <string>

namespace quillorn {

/// What the configured model makes of the sentence, names that are not on offer left out. Shows on the terminal that it
/// takes a while. Throws std::runtime_error with the reason when it makes nothing of it.
ParsedTaskResult readByModel(Session& session, const std::string& sentence, const TaskNames& names);

} // namespace quillorn
