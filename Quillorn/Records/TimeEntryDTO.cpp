#include "Records/TimeEntryDTO.h"

namespace quillorn {

namespace {

constexpr std::tuple entryFields{
    wireField<&TimeEntryDTO::id, &TimeEntry::id>("id", "Identifies the entry for good."),
    wireField<&TimeEntryDTO::startTime, &TimeEntry::startTime>("startTime", "When it began."),
    wireField<&TimeEntryDTO::endTime, &TimeEntry::endTime>("endTime", "When it ended; a running entry has none."),
    wireField<&TimeEntryDTO::notes, &TimeEntry::notes>("notes", "What was done."),
    wireField<&TimeEntryDTO::taskId>("taskId", "The task that was worked on."),
    wireField<&TimeEntryDTO::projectId>("projectId", "The project, for time without a task."),
    wireField<&TimeEntryDTO::duration>(
        "duration", "Its length in seconds; that of a running entry up to the moment of the answer."),
    wireField<&TimeEntryDTO::isRunning, &TimeEntry::isRunning>("isRunning", "Whether it has no end yet."),
    wireField<&TimeEntryDTO::displayName>(
        "displayName", "What to call it in a list: the title of its task, or the name of its project."),
};

std::optional<UUID> idOf(const TimeEntryLinks::Link* link) {
    return link != nullptr ? std::optional(link->id) : std::nullopt;
}

const std::string* nameOf(const TimeEntryLinks::Link* link) {
    return link != nullptr ? &link->name : nullptr;
}

} // namespace

const RecordType& TimeEntryDTO::recordType() {
    static constexpr auto fields = wireFields<TimeEntryDTO>(entryFields);
    static constexpr RecordType type{"TimeEntryDTO", fields};
    return type;
}

TimeEntryRows::TimeEntryRows(ModelContext& context, std::vector<TimeEntry*> entries, Date now)
    : m_entries(std::move(entries)),
      m_now(now),
      m_links(context, m_entries) {}

void TimeEntryRows::fill(std::size_t index, TimeEntryDTO& record) const {
    const TimeEntry& entry = *m_entries[index];
    copyFields(entryFields, entry, record);
    const auto* task = m_links.taskOf(entry);
    const auto* project = m_links.projectOf(entry);
    record.taskId = idOf(task);
    record.projectId = idOf(project);
    record.duration = entry.duration(m_now);
    record.displayName = entry.displayName(nameOf(task), nameOf(project));
}

RowKey TimeEntryRows::key(std::size_t index) const {
    return m_entries[index]->key();
}

std::optional<Date> TimeEntryRows::changesAfter(std::size_t index) const {
    return m_entries[index]->isRunning() ? std::optional(m_now) : std::nullopt;
}

} // namespace quillorn
