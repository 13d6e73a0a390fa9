#pragma once

#include "Models/TimeEntry.h"

#include <vector>

namespace quillorn {

class ModelContext;

/// Which time entries a listing shows; an absent condition does not restrict.
struct TimeEntrySearch {
    /// Otherwise entries are left out whose own or whose task's project, or its client, is archived.
    bool includeArchived = false;
    std::optional<UUID> taskId{};
    /// Of the entry itself or of its task.
    std::optional<UUID> projectId{};
    std::optional<bool> running{};
};

/// The entries that match, the latest first.
std::vector<TimeEntry*> findTimeEntries(ModelContext& context, const TimeEntrySearch& search);

} // namespace quillorn
