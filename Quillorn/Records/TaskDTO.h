#pragma once

#include "Models/TaskTotals.h"
#include "Records/TagDTO.h"
#include "Records/WireRecord.h"

namespace quillorn {

class ModelContext;
class ProjectTask;

struct TaskDTO {
    UUID id;
    std::string title;
    std::optional<std::string> description{};
    std::optional<Date> dueDate{};
    std::optional<Date> completedAt{};
    /// Raw values of TaskPriority and TaskStatus.
    std::int64_t priority = 0;
    std::int64_t status = 0;
    std::int64_t sortOrder = 0;
    Date createdAt{};
    Date updatedAt{};
    std::optional<UUID> projectId{};
    std::vector<TagDTO> tags{};
    bool isCompleted = false;
    bool isOverdue = false;
    /// In seconds; running entries count up to the moment of the answer.
    double totalTimeSpent = 0;
    std::optional<UUID> parentTaskId{};
    std::int64_t subtaskCount = 0;
    std::int64_t completedSubtaskCount = 0;
    std::int64_t depth = 0;
    std::optional<std::string> sourceTitle{};
    std::optional<std::string> sourceURL{};

    static const RecordType& recordType();
};

class TaskRows {
  public:
    using Object = ProjectTask;
    using Record = TaskDTO;

    TaskRows(ModelContext& context, std::vector<ProjectTask*> tasks, Date now);

    std::size_t size() const { return m_tasks.size(); }
    void fill(std::size_t index, TaskDTO& record) const;
    RowKey key(std::size_t index) const;
    std::optional<Date> changesAfter(std::size_t index) const;

  private:
    std::vector<ProjectTask*> m_tasks;
    Date m_now;
    TaskTotalsTable m_totals;
    TagCounts m_tagCounts;
};

} // namespace quillorn
