#include "API/TimeEntryDTO.h"

#include "API/Rows.h"
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

TimeEntryRows::TimeEntryRows(ModelContext&, std::vector<TimeEntry*> entries, Date now)
    : m_entries(std::move(entries)),
      m_now(now) {
    for (const TimeEntry* entry : m_entries) {
        entry->task();
        entry->project();
    }
}

void TimeEntryRows::fill(std::size_t index, TimeEntryDTO& record) const {
    const TimeEntry& entry = *m_entries[index];
    record.id = entry.id();
    record.startTime = entry.startTime();
    record.endTime = entry.endTime();
    record.notes = entry.notes();
    record.taskId = idOf(entry.task());
    record.projectId = idOf(entry.project());
    record.duration = entry.duration(m_now);
    record.isRunning = entry.isRunning();
    record.displayName = entry.displayName();
}

} // namespace quillorn
