#pragma once

#include "Platform/RunTask.h"
#include "Support/RecordingLog.h"

namespace quillorn {

/// Runs tasks to their end on a main queue of its own.
struct TaskRunner {
    /// What the task that `make` makes gives, or throws.
    template <typename Make>
    auto result(const Make& make) {
        return runTask(loop, make());
    }

    RecordingLog log;
    RunLoop loop{log};
};

} // namespace quillorn
