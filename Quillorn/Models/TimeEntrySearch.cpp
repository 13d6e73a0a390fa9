#include "Models/TimeEntrySearch.h"

#include "Models/SearchConditions.h"
#include "Models/Sorting.h"

namespace quillorn {

std::vector<TimeEntry*> findTimeEntries(ModelContext& context, const TimeEntrySearch& search) {
    SearchConditions conditions;
    if (!search.includeArchived) {
        conditions.addProjectNotHidden();
        conditions.addTaskNotHidden();
    }
    if (search.taskId)
        conditions.add("task IN (SELECT key FROM ProjectTask WHERE id = ?)", *search.taskId);
    if (search.projectId)
        conditions.add("key IN (WITH wanted AS (SELECT key FROM Project WHERE id = ?) "
                       "SELECT key FROM TimeEntry WHERE project IN wanted UNION ALL "
                       "SELECT key FROM TimeEntry WHERE task IN (SELECT key FROM ProjectTask WHERE project IN wanted))",
                       *search.projectId);
    if (search.running)
        conditions.add(*search.running ? "endTime IS NULL" : "endTime IS NOT NULL");
    auto entries = context.fetch<TimeEntry>(std::move(conditions).query());
    sortLatestFirst(entries, &TimeEntry::startTime);
    return entries;
}

} // namespace quillorn
