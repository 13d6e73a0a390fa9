#include "Records/TimeEntryDTO.h"

namespace quillorn {

namespace {

std::optional<UUID> idOf(const TimeEntryLinks::Link* link) {
    return link != nullptr ? std::optional(link->id) : std::nullopt;
}

const std::string* nameOf(const TimeEntryLinks::Link* link) {
    return link != nullptr ? &link->name : nullptr;
}

} // namespace

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

TimeEntryRows::TimeEntryRows(ModelContext& context, std::vector<TimeEntry*> entries, Date now)
    : m_entries(std::move(entries)),
      m_now(now),
      m_links(context, m_entries) {}

void TimeEntryRows::fill(std::size_t index, TimeEntryDTO& record) const {
    const TimeEntry& entry = *m_entries[index];
    const auto* task = m_links.taskOf(entry);
    const auto* project = m_links.projectOf(entry);
    record.id = entry.id();
    record.startTime = entry.startTime();
    record.endTime = entry.endTime();
    record.notes = entry.notes();
    record.taskId = idOf(task);
    record.projectId = idOf(project);
    record.duration = entry.duration(m_now);
    record.isRunning = entry.isRunning();
    record.displayName = entry.displayName(nameOf(task), nameOf(project));
}

RowKey TimeEntryRows::key(std::size_t index) const {
    return m_entries[index]->key();
}

std::optional<Date> TimeEntryRows::changesAfter(std::size_t index) const {
    return m_entries[index]->isRunning() ? std::optional(m_now) : std::nullopt;
}

} // namespace quillorn
