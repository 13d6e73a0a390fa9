#include "MCP/ToolLists.h"
#include "Models/ProjectSearch.h"
#include "Records/Edits.h"
#include "Records/Lookup.h"
#include "Records/ProjectRequests.h"

namespace quillorn {

namespace {

struct ProjectArguments {
    UUID projectId;
};

struct UpdateProjectArguments : UpdateProjectRequest {
    UUID projectId;
};

/// What creating and updating share, worded for either.
template <class Arguments>
ToolParameters<Arguments> sharedParameters(RecordUse use) {
    const bool isUpdate = use == RecordUse::update;
    return {
        {"description", &ProjectFields::description, isUpdate ? "New project description" : "Project description"},
        {"color", &ProjectFields::color, isUpdate ? "New hex color code" : "Hex color code", hexColor()},
    };
}

} // namespace

std::vector<Tool> projectTools() {
    using Create = CreateProjectRequest;
    using Update = UpdateProjectArguments;
    return {
        readingTool<ProjectSearch>(
            "list_projects",
            "List all projects. Filter by client, name, or archived status. By default excludes archived projects and "
            "projects under archived clients.",
            {{"clientId", &ProjectSearch::clientId, "Filter by client UUID"},
             {"name", &ProjectSearch::name, "Filter by name (case-insensitive contains)"},
             {"includeArchived", &ProjectSearch::includeArchived,
              "Include archived projects and projects under archived clients"}},
            [](const ToolCall& call, const ProjectSearch& search) {
                return findProjects(call.context, search, call.text);
            }),
        readingTool<ProjectArguments>("get_project", "Get a specific project with task counts and time totals.",
                                      {{"projectId", &ProjectArguments::projectId, "Project UUID"}},
                                      [](const ToolCall& call, const ProjectArguments& arguments) -> Project& {
                                          return findOrThrow<Project>(call.context, arguments.projectId);
                                      }),
        changingTool<Create>("create_project", "Create a new project, optionally under a client.",
                             ToolParameters<Create>{
                                 {"name", &Create::name, "Project name (required)"},
                                 {"clientId", &Create::clientId, "Parent client UUID"},
                             } + sharedParameters<Create>(RecordUse::whole),
                             [](const ToolCall& call, const Create& arguments) -> Project& {
                                 return createProject(call.context, arguments, call.now);
                             }),
        changingTool<Update>("update_project", "Update a project's name, description, color, or archived status.",
                             ToolParameters<Update>{
                                 {"projectId", &Update::projectId, "Project UUID (required)"},
                                 {"name", &Update::name, "New project name"},
                                 {"isArchived", &Update::isArchived, "Archive or unarchive the project"},
                             } + sharedParameters<Update>(RecordUse::update),
                             [](const ToolCall& call, const Update& arguments) -> Project& {
                                 auto& project = findOrThrow<Project>(call.context, arguments.projectId);
                                 updateProject(call.context, project, arguments, call.now);
                                 return project;
                             }),
    };
}

} // namespace quillorn
