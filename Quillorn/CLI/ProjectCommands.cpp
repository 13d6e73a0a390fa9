#include "CLI/Details.h"
#include "CLI/RecordCommandLine.h"
#include "CLI/RecordDefinitions.h"
#include "CLI/ScopeOrder.h"
#include "Models/DeletionQuestions.h"
#include "Models/Formatters.h"
#include "Models/ProjectSearch.h"
#include "Records/Edits.h"
#include "Records/ProjectDTO.h"
#include "Records/ProjectRequests.h"
#include "Records/RecordChoice.h"

#include <CLI/CLI.hpp>
#include <map>

namespace quillorn {

namespace {

struct ProjectOptions : RecordOptions {
    UpdateProjectRequest fields;
    std::optional<std::string> client;
    bool hasNoClient = false;
    std::optional<std::string> group;
    bool showsArchived = false;
};

void addFields(CLI::App* command, ProjectOptions& options) {
    command->add_option("--description", options.fields.description, "What there is to say of it")->type_name("TEXT");
    command->add_option("--color", options.fields.color, "Its colour, as #RRGGBB")->type_name("COLOR");
}

std::vector<Project*> find(StoreWork& work, const ProjectOptions& options) {
    ProjectSearch search{.includeArchived = options.showsArchived};
    if (options.client)
        search.clientId = chooseClient(work.context, *options.client, work.text()).id();
    auto projects = findProjects(work.context, search, work.text());
    if (options.hasNoClient)
        std::erase_if(projects, [](const Project* project) { return project->client() != nullptr; });
    return projects;
}

void printList(const std::vector<Project*>& projects, StoreWork& work) {
    using Align = Table::Column::Align;
    Table table({{"Id"},
                 {"Name"},
                 {"Client"},
                 {"Group"},
                 {"Open", Align::right},
                 {"Tasks", Align::right},
                 {"Time", Align::right},
                 {"Archived"}});
    std::map<UUID, std::string> groups;
    for (const ProjectDivider* group : work.context.fetch<ProjectDivider>())
        groups[group->id()] = group->title();
    const ProjectRows rows(work.context, projects, work.now);
    ProjectDTO record;
    for (std::size_t index = 0; index < rows.size(); ++index) {
        rows.fill(index, record);
        const Project& project = *projects[index];
        const auto group = project.groupID() ? groups.find(*project.groupID()) : groups.end();
        table.add({{record.id.string(), shortId(record.id), Paint::dim},
                   record.name,
                   project.client() != nullptr ? project.client()->name() : std::string(),
                   group != groups.end() ? group->second : std::string(),
                   std::to_string(record.taskCount - record.completedTaskCount),
                   std::to_string(record.taskCount),
                   {fmt::format("{:.0f}", record.totalTimeSpent),
                    record.totalTimeSpent > 0 ? hoursAndMinutes(record.totalTimeSpent) : ""},
                   {record.isArchived ? "true" : "false", record.isArchived ? "yes" : "", Paint::dim}});
    }
    if (!table.isEmpty())
        table.print();
}

void print(Project& project, StoreWork& work) {
    const auto record = recordOf<ProjectRows>(project, work.now);
    Details details;
    details.add("Name", {record.name, Paint::bold});
    details.add("Id", record.id.string());
    if (const Client* client = project.client())
        details.add("Client", client->name());
    details.add("Description", record.description.value_or(""));
    details.add("Color", record.color);
    details.add("Tasks", fmt::format("{} of {} completed", record.completedTaskCount, record.taskCount));
    if (record.totalTimeSpent > 0)
        details.add("Time spent",
                    {fmt::format("{:.0f}", record.totalTimeSpent), hoursAndMinutes(record.totalTimeSpent)});
    if (record.isArchived)
        details.add("Archived", {"true", "yes"});
    details.print();
}

Project& make(StoreWork& work, const ProjectOptions& options) {
    CreateProjectRequest request;
    static_cast<ProjectFields&>(request) = static_cast<const ProjectFields&>(options.fields);
    request.name = joined(options.names);
    if (options.client)
        request.clientId = chooseClient(work.context, *options.client, work.text()).id();
    requireFaultless(request);
    ProjectDivider* group = options.group ? &chooseGroup(work.context, *options.group, work.text()) : nullptr;
    if (group != nullptr && group->clientID() != request.clientId)
        throw std::runtime_error("the group is one of another client");
    Project& project = createProject(work.context, request, work.now);
    if (group != nullptr)
        moveProject(project, group, layoutOf(project.client(), work));
    return project;
}

auto edit(StoreWork& work, const ProjectOptions& options) {
    UpdateProjectRequest request = options.fields;
    if (options.client)
        request.clientId = chooseClient(work.context, *options.client, work.text()).id();
    requireFaultless(request);
    return [&work, &options, request](Project& project) -> Project& {
        updateProject(work.context, project, request, work.now);
        if (options.hasNoClient && project.client() != nullptr)
            moveProjectToClient(work.context, project, nullptr);
        return project;
    };
}

/// Where a project goes within its scope.
struct OrderOptions : RecordOptions {
    PlaceOptions place;
    std::optional<std::string> group;
    bool leavesGroup = false;
};

auto order(StoreWork& work, const OrderOptions& options) {
    ProjectDivider* group = options.group ? &chooseGroup(work.context, *options.group, work.text()) : nullptr;
    return [&work, &options, group](Project& project) -> Project& {
        const ScopeLayout layout = layoutOf(project.client(), work);
        if (group != nullptr && group->clientID() != idOf(project.client()))
            throw std::runtime_error("the group is one of another client");
        if (group != nullptr || options.leavesGroup)
            moveProject(project, group, layout);
        else
            place(project, neighboursOf(project, layout), options.place);
        return project;
    };
}

} // namespace

void addProjectCommands(CLI::App& app, Action& chosen) {
    CLI::App* project = addParent(app, "project", "Keep projects");
    const RecordKind<ProjectRows> kind{project, chosen, "PROJECT",
                                       "Projects: id, name, the beginning of an id or a part of a name; - reads them",
                                       chooseProject};
    auto listed = std::make_shared<ProjectOptions>();
    CLI::App* list = addListing<ProjectRows>(project, chosen, "Show the projects", listed, find, printList);
    CLI::Option* ofClient = list->add_option("--client", listed->client, "Of a client")->type_name("CLIENT");
    list->add_flag("--no-client", listed->hasNoClient, "Without a client")->excludes(ofClient);
    list->add_flag("--archived", listed->showsArchived, "Archived ones as well");

    auto made = std::make_shared<ProjectOptions>();
    CLI::App* add = addMaking<ProjectRows>(project, chosen, "NAME", "What it is called", "Make a project", made, make);
    add->add_option("--client", made->client, "For whom it is done")->type_name("CLIENT");
    add->add_option("--group", made->group, "The group of projects that it belongs to")->type_name("GROUP");
    addFields(add, *made);
    addShowing(kind, "Show all of a project", print);

    auto changed = std::make_shared<ProjectOptions>();
    CLI::App* editing = addChanging(kind, "edit", "Change projects", "Changed", changed, edit);
    editing->add_option("--name", changed->fields.name, "The new name")->type_name("NAME");
    addFields(editing, *changed);
    CLI::Option* toClient =
        editing->add_option("--client", changed->client, "For whom it is done")->type_name("CLIENT");
    editing->add_flag("--no-client", changed->hasNoClient, "For nobody")->excludes(toClient);

    addArchiving(kind, "Put projects away, with all that is in them", "Take projects out of the archive");
    auto moved = std::make_shared<OrderOptions>();
    CLI::App* ordering =
        addChanging(kind, "order", "Give projects another place beside their neighbours", "Moved", moved, order);
    addPlaces(ordering, moved->place);
    CLI::Option* toGroup =
        ordering->add_option("--group", moved->group, "Into this group, as its last")->type_name("GROUP");
    ordering->add_flag("--no-group", moved->leavesGroup, "Out of its group")->excludes(toGroup);
    addDeleting(kind, "Delete projects with all that is in them", [](const std::vector<Project*>& projects) {
        return questionFor(projects, "Projects", deletionOfProject);
    });
}

} // namespace quillorn
