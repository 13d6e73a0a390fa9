#pragma once

#include "Records/TaskRequests.h"

namespace quillorn {

class ModelContext;
class SettingsStore;
struct ParsedTaskResult;

/// What a sentence asks for: names stand for the records that have them, and the priority is the usual one where it
/// says none. That the due date has a time is not in it.
CreateTaskRequest requestOf(const ParsedTaskResult& sentence, ModelContext& context, SettingsStore& settings);

} // namespace quillorn
