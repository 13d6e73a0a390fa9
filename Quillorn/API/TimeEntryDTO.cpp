#include "API/TimeEntryDTO.h"

#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/TimeEntry.h"

namespace quillorn {

const RecordType& TimeEntryDTO::recordType() {
    static constexpr auto fields = wireFields({
        wireField<&TimeEntryDTO::id>("id"),
        wireField<&TimeEntryDTO::startTime>("startTime"),
        wireField<&TimeEntryDTO::endTime>("endTime"),
        wireField<&TimeEntryDTO::notes>("notes"),
        wireField<&TimeEntryDTO::taskId>("taskId"),
        wireField<&TimeEntryDTO::projectId>("projectId"),
        wireField<&TimeEntryDTO::duration>("duration"),
        wireField<&TimeEntryDTO::isRunning>("isRunning"),
        wireField<&TimeEntryDTO::displayName>("displayName"),
    });
    static constexpr RecordType type{"TimeEntryDTO", fields};
    return type;
}

void TimeEntryDTO::fill(const TimeEntry& entry, Date now) {
    const ProjectTask* task = entry.task();
    const Project* project = entry.project();
    id = entry.id();
    startTime = entry.startTime();
    endTime = entry.endTime();
    notes = entry.notes();
    taskId = task != nullptr ? std::optional(task->id()) : std::nullopt;
    projectId = project != nullptr ? std::optional(project->id()) : std::nullopt;
    duration = entry.duration(now);
    isRunning = entry.isRunning();
    displayName = entry.displayName();
}

TimeEntryRows::TimeEntryRows(std::vector<TimeEntry*> entries, Date now) : m_entries(std::move(entries)), m_now(now) {
    for (const TimeEntry* entry : m_entries) {
        entry->task();
        entry->project();
    }
}

} // namespace quillorn
