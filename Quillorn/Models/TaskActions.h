#pragma once

#include "Platform/Date.h"

#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

class ModelContext;
class Note;
class Project;
class ProjectTask;
class Tag;
class UUID;

/// What a surface asks before it deletes.
struct Confirmation {
    std::string title;
    std::string message;

    friend bool operator==(const Confirmation&, const Confirmation&) = default;
};

Confirmation deletionOfTask(const ProjectTask& task);
Confirmation deletionOfTasks(std::size_t count);
Confirmation deletionOfNote(const Note& note);

/// A copy to start over with, at the top level and open: it takes title, description, due date, priority, project and
/// source, and nothing that belongs to the old task's life.
ProjectTask& duplicateTask(const ProjectTask& task, Date now);

/// Moves the task alone; subtasks, entries and comments stay where they are.
void moveTask(ProjectTask& task, Project* project, Date now);

/// Work on the task begins: it is in progress from now on, and open again if it was completed.
void startWork(ProjectTask& task, Date now);

/// Why a task can't stand under another one.
enum class ParentFault { none, self, circle };
ParentFault faultOfParent(const ProjectTask& task, const ProjectTask& parent);

/// Tags that the task has already stay once.
void addTagsToTask(ProjectTask& task, const std::vector<Tag*>& added, Date now);
/// Only notes the change where the task doesn't have it.
void removeTagFromTask(ProjectTask& task, const UUID& tagId, Date now);

/// Adds a comment and notes the change on the task. Null, and nothing done, when the text is blank.
Note* addComment(ProjectTask& task, std::string_view text, Date now);
/// The latest first.
std::vector<Note*> commentsOf(const ProjectTask& task);

} // namespace quillorn
