#include "Views/RecordDeletion.h"

#include <fmt/core.h>

namespace quillorn {

Confirmation deletionOfClient(const std::string& name, std::size_t projects) {
    return {
        "Delete Client?",
        fmt::format("This permanently deletes “{}” and its {} project{} — including every task, note, and time entry "
                    "inside them. This can’t be undone.",
                    name, projects, projects == 1 ? "" : "s")};
}

Confirmation deletionOfProject(const std::string& name) {
    return {"Delete Project?", fmt::format("This permanently deletes “{}” — including all its tasks, notes, and time "
                                           "entries. This can’t be undone.",
                                           name)};
}

Confirmation deletionOfTag(const std::string& name, std::size_t tasks) {
    return {"Delete Tag?", fmt::format("“{}” will be removed from {} task{}. The tasks themselves are kept.", name,
                                       tasks, tasks == 1 ? "" : "s")};
}

} // namespace quillorn
