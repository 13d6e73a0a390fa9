#pragma once

#include "Models/ProjectTask.h"
#include "Records/TaskDTO.h"

namespace quillorn {

/// The fields of every record of a task.
inline constexpr std::tuple taskFields{
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

} // namespace quillorn
