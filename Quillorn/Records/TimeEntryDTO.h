#pragma once

#include "Models/TimeEntryLinks.h"
#include "Records/WireRecord.h"

namespace quillorn {

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

    static const RecordType& recordType();
};

class TimeEntryRows {
  public:
    using Object = TimeEntry;
    using Record = TimeEntryDTO;

    TimeEntryRows(ModelContext& context, std::vector<TimeEntry*> entries, Date now);

    std::size_t size() const { return m_entries.size(); }
    void fill(std::size_t index, TimeEntryDTO& record) const;
    RowKey key(std::size_t index) const;
    std::optional<Date> changesAfter(std::size_t index) const;

  private:
    std::vector<TimeEntry*> m_entries;
    Date m_now;
    TimeEntryLinks m_links;
};

} // namespace quillorn
