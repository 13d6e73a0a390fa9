#include "Models/TaskActions.h"

#include "Models/Note.h"
#include "Models/ProjectTask.h"
#include "Models/Sorting.h"
#include "Models/Tag.h"
#include "Platform/Text.h"
#include "Store/ModelContext.h"

#include <fmt/core.h>

namespace quillorn {

namespace {

std::string counted(std::size_t count, std::string_view noun, std::string_view plural) {
    return fmt::format("{} {}", count, count == 1 ? noun : plural);
}

} // namespace

Confirmation deletionOfTask(const ProjectTask& task) {
    std::string belongings;
    const auto add = [&](std::size_t count, std::string_view noun, std::string_view plural) {
        if (count == 0)
            return;
        belongings += belongings.empty() ? " and its " : " and ";
        belongings += counted(count, noun, plural);
    };
    add(task.timeEntries().size(), "time entry", "time entries");
    add(task.notes().size(), "note", "notes");

    std::string subtasks;
    if (const std::size_t count = task.subtaskCount(); count > 0)
        subtasks = fmt::format(" Its {} will be kept as top-level tasks.", counted(count, "subtask", "subtasks"));
    return {"Delete Task?", fmt::format("This permanently deletes “{}”{}.{} This can’t be undone.", task.title(),
                                        belongings, subtasks)};
}

Confirmation deletionOfTasks(std::size_t count) {
    return {fmt::format("Delete {} Tasks?", count),
            "This permanently deletes them with their time entries and notes. This can’t be undone."};
}

Confirmation deletionOfNote(const Note& note) {
    return {"Delete Note?", fmt::format("This permanently deletes “{}”. This can’t be undone.", note.displayTitle())};
}

ProjectTask& duplicateTask(const ProjectTask& task, Date now) {
    auto& copy = task.context().insert<ProjectTask>(
        ProjectTask::Arguments{
            .title = task.title() + " (Copy)",
            .taskDescription = task.taskDescription(),
            .dueDate = task.dueDate(),
            .priority = task.priority(),
            .project = task.project(),
        },
        now);
    copy.setSourceTitle(task.sourceTitle());
    copy.setSourceURL(task.sourceURL());
    return copy;
}

void moveTask(ProjectTask& task, Project* project, Date now) {
    task.setProject(project);
    task.setUpdatedAt(now);
}

void startWork(ProjectTask& task, Date now) {
    if (task.status() != TaskStatus::inProgress)
        task.setStatus(TaskStatus::inProgress, now);
}

ParentFault faultOfParent(const ProjectTask& task, const ProjectTask& parent) {
    if (&task == &parent)
        return ParentFault::self;
    // The number of steps ends a chain that runs into a circle of its own.
    const ProjectTask* above = &parent;
    for (std::size_t steps = parent.depth(); steps > 0; --steps) {
        above = above->parentTask();
        if (above == &task)
            return ParentFault::circle;
    }
    return ParentFault::none;
}

void addTagsToTask(ProjectTask& task, const std::vector<Tag*>& added, Date now) {
    std::vector<Tag*> tags(task.tags().begin(), task.tags().end());
    tags.insert(tags.end(), added.begin(), added.end());
    task.setTags(tags);
    task.setUpdatedAt(now);
}

void removeTagFromTask(ProjectTask& task, const UUID& tagId, Date now) {
    std::vector<Tag*> tags(task.tags().begin(), task.tags().end());
    std::erase_if(tags, [&](const Tag* tag) { return tag->id() == tagId; });
    task.setTags(tags);
    task.setUpdatedAt(now);
}

Note* addComment(ProjectTask& task, std::string_view text, Date now) {
    const std::string_view content = trimWhitespaceAndNewlines(text);
    if (content.empty())
        return nullptr;
    auto& note = task.context().insert<Note>(
        Note::Arguments{.title = "", .content = std::string(content), .project = task.project(), .task = &task}, now);
    task.setUpdatedAt(now);
    return &note;
}

std::vector<Note*> commentsOf(const ProjectTask& task) {
    std::vector<Note*> comments(task.notes().begin(), task.notes().end());
    sortLatestFirst(comments, &Note::createdAt);
    return comments;
}

} // namespace quillorn
