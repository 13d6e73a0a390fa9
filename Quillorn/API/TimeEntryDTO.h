#pragma once

#include "API/WireRecord.h"

namespace quillorn {

class TimeEntry;

struct TimeEntryDTO {
    UUID id;
    Date startTime{};
    std::optional<Date> endTime{};
    std::optional<std::string> notes{};
    std::optional<UUID> taskId{};
    std::optional<UUID> projectId{};
    /// In seconds; a running entry counts up to the moment of the answer.
    double duration = 0;
    bool isRunning = false;
    std::string displayName;

    void fill(const TimeEntry& entry, Date now);

    static const RecordType& recordType();
};

/// Time entries on their way to a list of records. What the records show is loaded at the start.
class TimeEntryRows {
  public:
    TimeEntryRows(std::vector<TimeEntry*> entries, Date now);

    std::size_t size() const { return m_entries.size(); }
    void fill(std::size_t index, TimeEntryDTO& record) const { record.fill(*m_entries[index], m_now); }

  private:
    std::vector<TimeEntry*> m_entries;
    Date m_now;
};

} // namespace quillorn
