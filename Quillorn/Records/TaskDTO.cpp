#include "Records/TaskDTO.h"

#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/Tag.h"
#include "Records/Rows.h"
#include "Records/TaskFields.h"
#include "Store/KeyMap.h"

#include <utility>

namespace quillorn {

namespace {

std::vector<Tag*> tagsOf(const std::vector<ProjectTask*>& tasks) {
    std::vector<Tag*> tags;
    KeyMap<bool> seen;
    for (const ProjectTask* task : tasks)
        for (Tag* tag : task->tags())
            if (!std::exchange(seen[tag->key()], true))
                tags.push_back(tag);
    return tags;
}

} // namespace

const RecordType& TaskDTO::recordType() {
    static constexpr auto fields = wireFields<TaskDTO>(taskFields);
    static constexpr RecordType type{"TaskDTO", fields};
    return type;
}

TaskRows::TaskRows(ModelContext& context, std::vector<ProjectTask*> tasks, Date now)
    : m_tasks(std::move(tasks)),
      m_now(now),
      m_totals(context, m_tasks, now),
      m_tagCounts(context, tagsOf(m_tasks)) {
    for (const ProjectTask* task : m_tasks)
        task->project();
    for (const ProjectTask* task : m_tasks)
        task->parentTask();
}

void TaskRows::fill(std::size_t index, TaskDTO& record) const {
    const ProjectTask& task = *m_tasks[index];
    copyFields(taskFields, task, record);
    const TaskTotals totals = m_totals.of(task);
    record.projectId = idOf(task.project());
    record.tags.resize(task.tags().size());
    auto tagRecord = record.tags.begin();
    for (const Tag* tag : task.tags())
        (tagRecord++)->fill(*tag, m_tagCounts.of(*tag));
    record.isOverdue = task.isOverdue(m_now);
    record.totalTimeSpent = totals.totalTimeSpent;
    record.parentTaskId = idOf(task.parentTask());
    record.subtaskCount = totals.subtaskCount;
    record.completedSubtaskCount = totals.completedSubtaskCount;
    record.depth = totals.depth;
}

RowKey TaskRows::key(std::size_t index) const {
    return m_tasks[index]->key();
}

std::optional<Date> TaskRows::changesAfter(std::size_t index) const {
    const ProjectTask& task = *m_tasks[index];
    if (m_totals.of(task).isRunning)
        return m_now;
    return !task.isCompleted() && !task.isOverdue(m_now) ? task.dueDate() : std::nullopt;
}

} // namespace quillorn
