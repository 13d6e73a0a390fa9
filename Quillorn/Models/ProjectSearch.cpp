#include "Models/ProjectSearch.h"

#include "Models/SearchConditions.h"
#include "Models/Sorting.h"

namespace quillorn {

std::vector<Project*> findProjects(ModelContext& context, const ProjectSearch& search, const Text& text) {
    SearchConditions conditions;
    if (!search.includeArchived)
        conditions.add(
            "NOT isArchived AND (client IS NULL OR client NOT IN (SELECT key FROM Client WHERE isArchived))");
    if (search.clientId)
        conditions.add("client IN (SELECT key FROM Client WHERE id = ?)", *search.clientId);
    auto projects = context.fetch<Project>(std::move(conditions).query());
    keepContaining(projects, text, search.name, &Project::name);
    sortByName(projects, text);
    return projects;
}

} // namespace quillorn
