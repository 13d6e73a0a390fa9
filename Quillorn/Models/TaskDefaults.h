#pragma once

#include "Models/Enums.h"

namespace quillorn {

class SettingsStore;

/// The priority of a new task of which nothing is said, as the user has set it.
TaskPriority usualPriority(SettingsStore& settings);

} // namespace quillorn
