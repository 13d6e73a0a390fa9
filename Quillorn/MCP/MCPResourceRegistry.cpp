#include "MCP/MCPResourceRegistry.h"

#include "Models/Project.h"
#include "Store/ModelContext.h"

#include <algorithm>

namespace quillorn {

namespace {

constexpr std::string_view scheme = "quillorn://";
constexpr std::string_view projectPrefix = "project/";

struct Resource {
    std::string_view path;
    const char* name;
    const char* description;
    std::string (*document)(const DocumentContext&);
};

constexpr Resource resources[] = {
    {"overview", "Overview", "Complete overview of all clients, projects, and aggregate statistics", overviewDocument},
    {"today", "Today", "Tasks due today, overdue tasks, and any running timers", todayDocument},
    {"overdue", "Overdue Tasks", "All incomplete tasks past their due date", overdueDocument},
    {"running-timers", "Running Timers", "Currently active time entries", runningTimersDocument},
    {"pinned-notes", "Pinned Notes", "All pinned notes across projects", pinnedNotesDocument},
};

} // namespace

MCPResourceRegistry::MCPResourceRegistry(ResourceEnvironment environment) : m_environment(environment) {
    for (const Resource& resource : resources)
        m_resources.resources.push_back({.uri = std::string(scheme).append(resource.path),
                                         .name = resource.name,
                                         .description = resource.description,
                                         .mimeType = jsonType});
    m_templates.resourceTemplates.push_back(
        {.uriTemplate = "quillorn://project/{projectId}",
         .name = "Project Details",
         .description = "Complete project information including tasks, notes, and time entries",
         .mimeType = jsonType});
}

std::string MCPResourceRegistry::read(const std::string& uri) const {
    if (!uri.starts_with(scheme))
        throw MCPResourceError::invalidURI(uri);
    const std::string_view path = std::string_view(uri).substr(scheme.size());
    ModelContext context(m_environment.container);
    const DocumentContext work{context, m_environment.clock.now(), m_environment.text, m_environment.calendar};
    if (const auto* found = std::ranges::find(resources, path, &Resource::path); found != std::end(resources))
        return found->document(work);
    const auto id =
        path.starts_with(projectPrefix) ? UUID::parse(path.substr(projectPrefix.size())) : std::optional<UUID>();
    if (Project* project = id ? context.find<Project>(*id) : nullptr)
        return projectDocument(work, *project);
    throw MCPResourceError::notFound(uri);
}

} // namespace quillorn
