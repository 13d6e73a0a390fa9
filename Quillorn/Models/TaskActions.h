#pragma once

#include "Platform/Date.h"

#include <string>
#include <string_view>

namespace quillorn {

class ModelContext;
class Note;
class Project;
class ProjectTask;

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

/// Adds a comment and notes the change on the task. Null, and nothing done, when the text is blank.
Note* addComment(ProjectTask& task, std::string_view text, Date now);

} // namespace quillorn
