#include "CLI/ScopeOrder.h"

#include <CLI/CLI.hpp>

namespace quillorn {

void addPlaces(CLI::App* command, PlaceOptions& options) {
    CLI::Option* up = command->add_flag("--up", options.up, "One place up");
    CLI::Option* down = command->add_flag("--down", options.down, "One place down")->excludes(up);
    CLI::Option* first = command->add_flag("--first", options.first, "Before all others")->excludes(up)->excludes(down);
    command->add_flag("--last", options.last, "Behind all others")->excludes(up)->excludes(down)->excludes(first);
}

ScopeLayout layoutOf(const Client* client, StoreWork& work) {
    Query projects{.where = "NOT isArchived AND client IS NULL"};
    Query groups{.where = "clientID IS NULL"};
    if (client != nullptr) {
        projects = {.where = "NOT isArchived AND client = ?", .values = {client->key()}};
        groups = {.where = "clientID = ?", .values = {client->id()}};
    }
    return scopeLayout(work.context.fetch<Project>(projects), work.context.fetch<ProjectDivider>(groups), work.text());
}

std::vector<Project*> neighboursOf(const Project& project, const ScopeLayout& layout) {
    for (const ScopeLayout::Entry& entry : layout.groups)
        if (project.groupID() == entry.group->id())
            return entry.members;
    return layout.loose;
}

} // namespace quillorn
