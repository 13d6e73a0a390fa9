#include "CLI/RecordCommandLine.h"
#include "CLI/RecordDefinitions.h"
#include "CLI/ScopeOrder.h"
#include "CLI/Table.h"
#include "Records/GroupRecord.h"
#include "Records/RecordChoice.h"

#include <CLI/CLI.hpp>

namespace quillorn {

namespace {

struct GroupOptions : RecordOptions {
    std::optional<std::string> client;
    bool hasNoClient = false;
    std::string title;
    PlaceOptions place;
};

Client* clientOf(const ProjectDivider& group, ModelContext& context) {
    return group.clientID() ? context.find<Client>(*group.clientID()) : nullptr;
}

/// In the order of the screens: by client, each in its own order.
std::vector<ProjectDivider*> find(StoreWork& work, const GroupOptions& options) {
    std::vector<Client*> scopes;
    if (options.client)
        scopes = {&chooseClient(work.context, *options.client, work.text())};
    else if (!options.hasNoClient)
        scopes = work.context.fetch<Client>({.order = "name COLLATE NOCASE, key"});
    if (!options.client)
        scopes.push_back(nullptr);
    std::vector<ProjectDivider*> groups;
    for (const Client* client : scopes)
        for (const ScopeLayout::Entry& entry : layoutOf(client, work).groups)
            groups.push_back(entry.group);
    return groups;
}

void printRows(const std::vector<ProjectDivider*>& groups, StoreWork& work) {
    Table table({{"Id"}, {"Name"}, {"Client"}, {"Projects", Table::Column::Align::right}});
    const GroupRows rows(work.context, groups, work.now);
    GroupRecord record;
    for (std::size_t index = 0; index < rows.size(); ++index) {
        rows.fill(index, record);
        const Client* client = clientOf(*groups[index], work.context);
        table.add({{record.id.string(), shortId(record.id), Paint::dim},
                   record.title,
                   client != nullptr ? client->name() : std::string(),
                   std::to_string(record.projectIds.size())});
    }
    if (!table.isEmpty())
        table.print();
}

void requireTitle(const std::string& title) {
    if (title.find_first_not_of(" \t\r\n") == std::string::npos)
        throw std::runtime_error("name cannot be empty");
}

} // namespace

void addGroupCommands(CLI::App& app, Action& chosen) {
    CLI::App* group = addParent(app, "group", "Keep groups of projects");
    const RecordKind<GroupRows> kind{group, chosen, "GROUP",
                                     "Groups: id, name, the beginning of an id or a part of a name; - reads them",
                                     chooseGroup};
    auto listed = std::make_shared<GroupOptions>();
    CLI::App* list = addListing<GroupRows>(group, chosen, "Show the groups", listed, find, printRows);
    CLI::Option* ofClient = list->add_option("--client", listed->client, "Of a client")->type_name("CLIENT");
    list->add_flag("--no-client", listed->hasNoClient, "Of projects without a client")->excludes(ofClient);

    auto made = std::make_shared<GroupOptions>();
    addMaking<GroupRows>(group, chosen, "NAME", "What it is called", "Make a group of projects", made,
                         [](StoreWork& work, const GroupOptions& options) -> ProjectDivider& {
                             requireTitle(joined(options.names));
                             const Client* client =
                                 options.client ? &chooseClient(work.context, *options.client, work.text()) : nullptr;
                             ProjectDivider& created =
                                 createGroup(client, layoutOf(client, work), work.context, work.now);
                             created.setTitle(joined(options.names));
                             return created;
                         })
        ->add_option("--client", made->client, "Whose projects it groups")
        ->type_name("CLIENT");
    addShowing(kind, "Show a group", [](ProjectDivider& each, StoreWork& work) { printRows({&each}, work); });

    auto renamed = std::make_shared<GroupOptions>();
    addChanging(kind, "edit", "Rename groups", "Changed", renamed,
                [](StoreWork&, const GroupOptions& options) {
                    requireTitle(options.title);
                    return [&](ProjectDivider& each) -> ProjectDivider& {
                        each.setTitle(options.title);
                        return each;
                    };
                })
        ->add_option("--name", renamed->title, "The new name")
        ->required()
        ->type_name("NAME");
    auto moved = std::make_shared<GroupOptions>();
    addPlaces(addChanging(kind, "order", "Give groups another place among the others", "Moved", moved,
                          [](StoreWork& work, const GroupOptions& options) {
                              return [&](ProjectDivider& each) -> ProjectDivider& {
                                  std::vector<ProjectDivider*> neighbours;
                                  for (const auto& entry : layoutOf(clientOf(each, work.context), work).groups)
                                      neighbours.push_back(entry.group);
                                  place(each, neighbours, options.place);
                                  return each;
                              };
                          }),
              moved->place);
    addDeleting(
        kind, "Delete groups; their projects are kept",
        [](const std::vector<ProjectDivider*>& groups) {
            return Confirmation{groups.size() == 1 ? "Delete Group?" : fmt::format("Delete {} Groups?", groups.size()),
                                "The projects themselves are kept."};
        },
        [](StoreWork& work, ProjectDivider& each) {
            ungroup(each, layoutOf(clientOf(each, work.context), work), work.context);
        });
}

} // namespace quillorn
