#pragma once

#include "Store/ModelContainer.h"
#include "Support/ChildProcess.h"

namespace quillorn {

/// This test program once more, as another process that works on a store as it is told, a line at a time:
///   add NAME      saves a tag, answers "ok"
///   names         answers the names of all tags, "a,b"
///   increment N   as the function does, answers "ok"
///   churn NAME N  as the function does, answers "ok"
///   hold          takes the write lock with an unsaved tag, and answers "held"
struct StoreWorker : ChildProcess {
    explicit StoreWorker(const std::filesystem::path& store);
};

/// Adds one to the sortOrder of the store's only task, each time in a unit of work of its own.
void increment(ModelContainer& container, int times);

/// Saves that many tags, "NAME.0" and so on, from a container that is opened and closed again and again: every few
/// commits a checkpoint that starts the log over.
void churn(const std::filesystem::path& store, const std::string& name, int times);

} // namespace quillorn
