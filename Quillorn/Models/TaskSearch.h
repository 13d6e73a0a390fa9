#pragma once

#include "Models/ProjectTask.h"

#include <optional>
#include <string>
#include <vector>

namespace quillorn {

class ModelContext;
class Text;

/// Which tasks a listing shows; an absent condition does not restrict.
struct TaskSearch {
    /// Otherwise tasks in archived projects, or in projects of archived clients, are left out.
    bool includeArchived = false;
    /// Contained in the title, without regard to case.
    std::optional<std::string> title{};
    std::optional<UUID> projectId{};
    /// Raw values; one without a case matches nothing.
    std::optional<std::int64_t> status{};
    std::optional<std::int64_t> priority{};
    std::optional<bool> completed{};
    std::optional<UUID> tagId{};
};

/// The tasks that match, by due date, those without one first. `text` compares in the user's locale.
std::vector<ProjectTask*> findTasks(ModelContext& context, const TaskSearch& search, const Text& text);

} // namespace quillorn
