#include "CLI/Details.h"
#include "CLI/RecordCommandLine.h"
#include "CLI/RecordDefinitions.h"
#include "Models/Client.h"
#include "Models/ClientSearch.h"
#include "Models/DeletionQuestions.h"
#include "Models/Formatters.h"
#include "Records/ClientDTO.h"
#include "Records/ClientRequests.h"
#include "Records/Edits.h"
#include "Records/RecordChoice.h"

#include <CLI/CLI.hpp>

namespace quillorn {

namespace {

struct ClientOptions : RecordOptions {
    UpdateClientRequest fields;
    bool showsArchived = false;
};

void addFields(CLI::App* command, ClientOptions& options) {
    command->add_option("--description", options.fields.description, "What there is to say of it")->type_name("TEXT");
    command->add_option("--color", options.fields.color, "Its colour, as #RRGGBB")->type_name("COLOR");
    command->add_option("--icon", options.fields.icon, "The name of its symbol")->type_name("NAME");
}

Cell timeCell(double seconds) {
    return {fmt::format("{:.0f}", seconds), seconds > 0 ? hoursAndMinutes(seconds) : ""};
}

void printList(const std::vector<Client*>& clients, StoreWork& work) {
    using Align = Table::Column::Align;
    Table table({{"Id"},
                 {"Name"},
                 {"Projects", Align::right},
                 {"Open tasks", Align::right},
                 {"Time", Align::right},
                 {"Archived"}});
    const ClientRows rows(work.context, clients, work.now);
    ClientDTO record;
    for (std::size_t index = 0; index < rows.size(); ++index) {
        rows.fill(index, record);
        table.add({{record.id.string(), shortId(record.id), Paint::dim},
                   record.name,
                   std::to_string(record.activeProjectCount),
                   std::to_string(record.activeTaskCount),
                   timeCell(record.totalTimeSpent),
                   {record.isArchived ? "true" : "false", record.isArchived ? "yes" : "", Paint::dim}});
    }
    if (!table.isEmpty())
        table.print();
}

void print(Client& client, StoreWork& work) {
    const auto record = recordOf<ClientRows>(client, work.now);
    Details details;
    details.add("Name", {record.name, Paint::bold});
    details.add("Id", record.id.string());
    details.add("Description", record.description.value_or(""));
    details.add("Color", record.color);
    details.add("Projects", fmt::format("{} of {} active", record.activeProjectCount, record.projectCount));
    details.add("Tasks", fmt::format("{} of {} open", record.activeTaskCount, record.totalTaskCount));
    details.add("Time spent", timeCell(record.totalTimeSpent));
    if (record.isArchived)
        details.add("Archived", {"true", "yes"});
    details.print();
}

} // namespace

void addClientCommands(CLI::App& app, Action& chosen) {
    CLI::App* client = addParent(app, "client", "Keep clients");
    const RecordKind<ClientRows> kind{client, chosen, "CLIENT",
                                      "Clients: id, name, the beginning of an id or a part of a name; - reads them",
                                      chooseClient};
    auto listed = std::make_shared<ClientOptions>();
    addListing<ClientRows>(
        client, chosen, "Show the clients", listed,
        [](StoreWork& work, const ClientOptions& options) {
            return findClients(work.context, {.includeArchived = options.showsArchived}, work.text());
        },
        printList)
        ->add_flag("--archived", listed->showsArchived, "Archived ones as well");
    auto made = std::make_shared<ClientOptions>();
    addFields(addMaking<ClientRows>(client, chosen, "NAME", "What it is called", "Make a client", made,
                                    [](StoreWork& work, const ClientOptions& options) -> Client& {
                                        CreateClientRequest request;
                                        static_cast<ClientFields&>(request) =
                                            static_cast<const ClientFields&>(options.fields);
                                        request.name = joined(options.names);
                                        requireFaultless(request);
                                        return createClient(work.context, request, work.now);
                                    }),
              *made);
    addShowing(kind, "Show all of a client", print);
    auto changed = std::make_shared<ClientOptions>();
    CLI::App* edit = addChanging(kind, "edit", "Change clients", "Changed", changed,
                                 [](StoreWork& work, const ClientOptions& options) {
                                     requireFaultless(options.fields);
                                     return [&](Client& each) -> Client& {
                                         updateClient(work.context, each, options.fields, work.now);
                                         return each;
                                     };
                                 });
    edit->add_option("--name", changed->fields.name, "The new name")->type_name("NAME");
    addFields(edit, *changed);
    addArchiving(kind, "Put clients away, with all that is in them", "Take clients out of the archive");
    addDeleting(kind, "Delete clients with all that is in them",
                [](const std::vector<Client*>& clients) { return questionFor(clients, "Clients", deletionOfClient); });
}

} // namespace quillorn
