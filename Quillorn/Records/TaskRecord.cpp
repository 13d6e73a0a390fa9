#include "Records/TaskRecord.h"

#include "Models/Client.h"
#include "Models/Note.h"
#include "Models/Project.h"
#include "Models/Sorting.h"
#include "Models/TaskActions.h"
#include "Models/TimeEntry.h"
#include "Records/Rows.h"
#include "Records/TaskFields.h"

namespace quillorn {

namespace {

constexpr std::tuple surroundings{
    wireField<&TaskRecord::dueHasTime, &ProjectTask::dueHasTime>(
        "dueHasTime", "Whether the time of day in `dueDate` means something."),
    wireField<&TaskRecord::projectName>("projectName", "The name of its project."),
    wireField<&TaskRecord::clientId>("clientId", "The client of that project."),
    wireField<&TaskRecord::clientName>("clientName", "The name of that client."),
};

constexpr std::tuple belongings{
    wireField<&WholeTaskRecord::comments>("comments", "Its comments, the latest first."),
    wireField<&WholeTaskRecord::subtasks>("subtasks", "Its direct subtasks."),
    wireField<&WholeTaskRecord::timeEntries>("timeEntries", "Its time entries, the latest first."),
};

template <class Rows>
std::vector<typename Rows::Record> recordsOf(ModelContext& context, const std::vector<typename Rows::Object*>& objects,
                                             Date now) {
    std::vector<typename Rows::Record> records(objects.size());
    const Rows rows(context, objects, now);
    for (std::size_t index = 0; index < objects.size(); ++index)
        rows.fill(index, records[index]);
    return records;
}

} // namespace

const RecordType& TaskRecord::recordType() {
    static constexpr auto fields = wireFields<TaskRecord>(taskFields, surroundings);
    static constexpr RecordType type{"Task", fields};
    return type;
}

const RecordType& WholeTaskRecord::recordType() {
    static constexpr auto fields = wireFields<WholeTaskRecord>(taskFields, surroundings, belongings);
    static constexpr RecordType type{"WholeTask", fields};
    return type;
}

TaskRecordRows::TaskRecordRows(ModelContext& context, std::vector<ProjectTask*> tasks, Date now)
    : m_tasks(std::move(tasks)),
      m_rows(context, m_tasks, now) {
    for (const ProjectTask* task : m_tasks)
        if (const Project* project = task->project())
            project->client();
}

void TaskRecordRows::fill(std::size_t index, TaskRecord& record) const {
    const ProjectTask& task = *m_tasks[index];
    m_rows.fill(index, record);
    copyFields(surroundings, task, record);
    const Project* project = task.project();
    const Client* client = project != nullptr ? project->client() : nullptr;
    record.projectName = project != nullptr ? std::optional(project->name()) : std::nullopt;
    record.clientId = idOf(client);
    record.clientName = client != nullptr ? std::optional(client->name()) : std::nullopt;
}

WholeTaskRecord wholeRecordOf(ProjectTask& task, Date now) {
    ModelContext& context = task.context();
    WholeTaskRecord record;
    TaskRecordRows(context, {&task}, now).fill(0, record);
    record.comments = recordsOf<NoteRows>(context, commentsOf(task), now);
    record.subtasks = recordsOf<TaskRecordRows>(context, {task.subtasks().begin(), task.subtasks().end()}, now);
    std::vector<TimeEntry*> entries(task.timeEntries().begin(), task.timeEntries().end());
    sortLatestFirst(entries, &TimeEntry::startTime);
    record.timeEntries = recordsOf<TimeEntryRows>(context, entries, now);
    return record;
}

} // namespace quillorn
