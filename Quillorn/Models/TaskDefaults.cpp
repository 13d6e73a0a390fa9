#include "Models/TaskDefaults.h"

#include "Models/Settings.h"

namespace quillorn {

TaskPriority usualPriority(SettingsStore& settings) {
    return enumFromRaw<TaskPriority>(Settings(settings).integer(setting("defaultPriority")))
        .value_or(TaskPriority::medium);
}

} // namespace quillorn
