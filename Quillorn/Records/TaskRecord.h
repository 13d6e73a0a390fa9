#pragma once

#include "Records/NoteDTO.h"
#include "Records/TaskDTO.h"
#include "Records/TimeEntryDTO.h"

namespace quillorn {

/// A task with what its list shows beside it.
struct TaskRecord : TaskDTO {
    bool dueHasTime = false;
    std::optional<std::string> projectName{};
    std::optional<UUID> clientId{};
    std::optional<std::string> clientName{};

    static const RecordType& recordType();
};

class TaskRecordRows {
  public:
    using Object = ProjectTask;
    using Record = TaskRecord;

    TaskRecordRows(ModelContext& context, std::vector<ProjectTask*> tasks, Date now);

    std::size_t size() const { return m_rows.size(); }
    void fill(std::size_t index, TaskRecord& record) const;

  private:
    std::vector<ProjectTask*> m_tasks;
    TaskRows m_rows;
};

/// A task with all that belongs to it.
struct WholeTaskRecord : TaskRecord {
    /// The latest first.
    std::vector<NoteDTO> comments{};
    std::vector<TaskRecord> subtasks{};
    /// The latest first.
    std::vector<TimeEntryDTO> timeEntries{};

    static const RecordType& recordType();
};

WholeTaskRecord wholeRecordOf(ProjectTask& task, Date now);

} // namespace quillorn
