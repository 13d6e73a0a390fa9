#include "CLI/StoreWork.h"
#include "CLI/TaskCommands.h"
#include "CLI/Words.h"
#include "Models/Note.h"
#include "Models/Project.h"
#include "Models/Tag.h"
#include "Models/TaskActions.h"
#include "Records/Edits.h"
#include "Records/RecordChoice.h"
#include "Records/TaskRecord.h"
#include "Records/TaskRequests.h"

namespace quillorn {

namespace {

constexpr auto update = ModelContext::Intent::update;

Chosen<TaskRecordRows> chosen(const TasksOptions& options) {
    return {options.tasks, chooseTask, options.json};
}

void requireFit(const ProjectTask& task, const ProjectTask& parent) {
    switch (faultOfParent(task, parent)) {
    case ParentFault::none:
        return;
    case ParentFault::self:
        throw std::runtime_error("a task can't stand under itself");
    case ParentFault::circle:
        throw std::runtime_error("a task can't stand under one of its own subtasks");
    }
}

std::vector<Tag*> tagsNamed(const std::vector<std::string>& names, StoreWork& work) {
    std::vector<Tag*> tags;
    tags.reserve(names.size());
    for (const std::string& name : names)
        tags.push_back(&chooseTag(work.context, name, work.text()));
    return tags;
}

} // namespace

ExitStatus completeTasks(const TasksOptions& options, bool isDone, const ProcessInfo& process) {
    Batch batch(options.tasks);
    return withStore(process, update, [&](StoreWork& work) {
        return changeEach(work, batch, chosen(options), isDone ? "Done" : "Reopened",
                          [&](ProjectTask& task) -> ProjectTask& {
                              task.setCompleted(isDone, work.now);
                              return task;
                          });
    });
}

ExitStatus duplicateTasks(const TasksOptions& options, const ProcessInfo& process) {
    Batch batch(options.tasks);
    return withStore(process, update, [&](StoreWork& work) {
        return changeEach(work, batch, chosen(options), "Added",
                          [&](const ProjectTask& task) -> ProjectTask& { return duplicateTask(task, work.now); });
    });
}

ExitStatus deleteTasks(const TasksOptions& options, bool isConfirmed, const ProcessInfo& process) {
    return deleteEach(
        process, chosen(options), isConfirmed,
        [](const std::vector<ProjectTask*>& tasks) {
            return tasks.size() == 1 ? deletionOfTask(*tasks.front()) : deletionOfTasks(tasks.size());
        },
        removeAlone);
}

ExitStatus editTasks(const EditTaskOptions& options, const ProcessInfo& process) {
    Batch batch(options.tasks);
    return withStore(process, update, [&](StoreWork& work) {
        UpdateTaskRequest request;
        request.title = options.title;
        request.description = options.description;
        request.sourceTitle = options.sourceTitle;
        request.sourceURL = options.sourceURL;
        if (options.priority)
            request.priority = static_cast<std::int64_t>(requirePriority(*options.priority));
        if (options.status)
            request.status = static_cast<std::int64_t>(requireStatus(*options.status));
        const bool clearsDue = options.due == "none";
        const auto due = options.due && !clearsDue ? std::optional(requireWhen(*options.due, work.now, work.calendar()))
                                                   : std::nullopt;
        if (due)
            request.dueDate = due->nextDate(work.now, work.calendar());
        requireFaultless(request);
        return changeEach(work, batch, chosen(options), "Changed", [&](ProjectTask& task) -> ProjectTask& {
            updateTask(work.context, task, request, work.now);
            if (clearsDue)
                task.setDueDate(std::nullopt);
            if (options.due)
                task.setDueHasTime(due && due->hasTime());
            return task;
        });
    });
}

ExitStatus moveTasks(const MoveOptions& options, const ProcessInfo& process) {
    Batch batch(options.tasks);
    return withStore(process, update, [&](StoreWork& work) {
        Project* project = options.project ? &chooseProject(work.context, *options.project, work.text()) : nullptr;
        ProjectTask* parent = options.parent ? &chooseTask(work.context, *options.parent, work.text()) : nullptr;
        return changeEach(work, batch, chosen(options), "Moved", [&](ProjectTask& task) -> ProjectTask& {
            if (parent != nullptr)
                requireFit(task, *parent);
            if (project != nullptr || options.leavesProject)
                moveTask(task, project, work.now);
            if (parent != nullptr || options.leavesParent)
                task.setParentTask(parent);
            task.setUpdatedAt(work.now);
            return task;
        });
    });
}

ExitStatus commentTask(const std::string& task, const std::vector<std::string>& words, bool json,
                       const ProcessInfo& process) {
    return withStore(process, update, [&](StoreWork& work) {
        ProjectTask& commented = chooseTask(work.context, task, work.text());
        Note* comment = addComment(commented, joined(words), work.now);
        if (comment == nullptr)
            throw std::runtime_error("the comment is blank");
        work.context.save();
        if (json)
            printChanged<NoteRows>(work, {comment}, json, "");
        else
            fmt::print("Commented: {}\n", shown(commented.title()));
        return ExitStatus::success;
    });
}

ExitStatus retagTasks(const RetagOptions& options, const ProcessInfo& process) {
    Batch batch(options.tasks);
    return withStore(process, update, [&](StoreWork& work) {
        const std::vector<Tag*> added = tagsNamed(options.added, work);
        const std::vector<Tag*> removed = tagsNamed(options.removed, work);
        return changeEach(work, batch, chosen(options), "Tagged", [&](ProjectTask& task) -> ProjectTask& {
            if (!added.empty())
                addTagsToTask(task, added, work.now);
            for (const Tag* tag : removed)
                removeTagFromTask(task, tag->id(), work.now);
            return task;
        });
    });
}

} // namespace quillorn
