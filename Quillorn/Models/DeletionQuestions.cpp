#include "Models/DeletionQuestions.h"

#include "Models/Client.h"
#include "Models/Project.h"
#include "Models/Tag.h"
#include "Models/TimeEntry.h"

#include <fmt/core.h>

namespace quillorn {

Confirmation deletionOfClient(const Client& client) {
    const std::size_t count = client.projects().size();
    return {"Delete Client?",
            fmt::format("This permanently deletes “{}” and its {} {} — including every task, note, and time entry "
                        "inside them. This can’t be undone.",
                        client.name(), count, count == 1 ? "project" : "projects")};
}

Confirmation deletionOfProject(const Project& project) {
    return {"Delete Project?", fmt::format("This permanently deletes “{}” — including all its tasks, notes, and time "
                                           "entries. This can’t be undone.",
                                           project.name())};
}

Confirmation deletionOfTag(const Tag& tag, std::int64_t taskCount) {
    return {"Delete Tag?", fmt::format("“{}” will be removed from {} {}. The tasks themselves are kept.", tag.name(),
                                       taskCount, taskCount == 1 ? "task" : "tasks")};
}

Confirmation deletionOfTimeEntry(const TimeEntry& entry) {
    return {"Delete Time Entry?",
            fmt::format("This permanently deletes the time entry of “{}”. This can’t be undone.", entry.displayName())};
}

} // namespace quillorn
