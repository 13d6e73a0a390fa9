#include "Records/TaskDTO.h"

#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/Tag.h"
#include "Records/Rows.h"
#include "Store/KeyMap.h"

#include <utility>

namespace quillorn {

namespace {

constexpr std::tuple taskFields{
    wireField<&TaskDTO::id, &ProjectTask::id>("id", "Identifies the task for good."),
    wireField<&TaskDTO::title, &ProjectTask::title>("title", "What is to be done."),
    wireField<&TaskDTO::description, &ProjectTask::taskDescription>("description", "The details, as free text."),
    wireField<&TaskDTO::dueDate, &ProjectTask::dueDate>("dueDate", "When it is due."),
    wireField<&TaskDTO::completedAt, &ProjectTask::completedAt>("completedAt",
                                                                "When it was completed; only completed tasks have it."),
    wireField<&TaskDTO::priority, &ProjectTask::priority>(
        "priority", {.description = "0 low, 1 medium, 2 high, 3 urgent.", .minimum = 0, .maximum = 3}),
    wireField<&TaskDTO::status, &ProjectTask::status>(
        "status",
        {.description = "The state of work. 0 to do, 1 in progress, 2 in review, 3 done.", .minimum = 0, .maximum = 3}),
    wireField<&TaskDTO::sortOrder, &ProjectTask::sortOrder>("sortOrder",
                                                            "Its place in a list that is ordered by hand."),
    wireField<&TaskDTO::createdAt, &ProjectTask::createdAt>("createdAt", "When it was created."),
    wireField<&TaskDTO::updatedAt, &ProjectTask::updatedAt>("updatedAt", "When it was last changed."),
    wireField<&TaskDTO::projectId>("projectId", "Its project. Tasks need none."),
    wireField<&TaskDTO::tags>("tags", "Its tags; empty when it has none."),
    wireField<&TaskDTO::isCompleted, &ProjectTask::isCompleted>(
        "isCompleted", "Whether `completedAt` is there. This, and not `status`, says that a task is done with."),
    wireField<&TaskDTO::isOverdue>("isOverdue", "Whether it is open and its due date has passed."),
    wireField<&TaskDTO::totalTimeSpent>(
        "totalTimeSpent", "Seconds of all its time entries; a running one counts up to the moment of the answer."),
    wireField<&TaskDTO::parentTaskId>("parentTaskId", "The task that this is a subtask of."),
    wireField<&TaskDTO::subtaskCount>("subtaskCount", {.description = "Number of direct subtasks.", .minimum = 0}),
    wireField<&TaskDTO::completedSubtaskCount>("completedSubtaskCount",
                                               {.description = "How many of them are completed.", .minimum = 0}),
    wireField<&TaskDTO::depth>("depth",
                               {.description = "Number of ancestors: 0 for a task that is no subtask.", .minimum = 0}),
    wireField<&TaskDTO::sourceTitle, &ProjectTask::sourceTitle>("sourceTitle",
                                                                "A name for the place that the task came from."),
    wireField<&TaskDTO::sourceURL, &ProjectTask::sourceURL>("sourceURL", "A link to that place."),
};

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
