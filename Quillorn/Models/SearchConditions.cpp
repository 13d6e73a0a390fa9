#include "Models/SearchConditions.h"

namespace quillorn {

namespace {

/// Archived, or of an archived client.
const std::string hiddenProjects = "SELECT p.key FROM Project p LEFT JOIN Client c ON c.key = p.client WHERE "
                                   "p.isArchived OR coalesce(c.isArchived, 0)";

/// The plus signs keep the column's index out of it: nearly all rows are wanted, and reading them in the order of the
/// table takes half the time.
std::string isNotIn(const std::string& column, const std::string& keys) {
    return "(+" + column + " IS NULL OR +" + column + " NOT IN (" + keys + "))";
}

} // namespace

void SearchConditions::addProjectNotHidden() {
    add(isNotIn("project", hiddenProjects));
}

void SearchConditions::addTaskNotHidden() {
    add(isNotIn("task", "SELECT key FROM ProjectTask WHERE project IN (" + hiddenProjects + ")"));
}

} // namespace quillorn
