#include "MCP/ToolLists.h"
#include "Models/ClientSearch.h"
#include "Records/ClientRequests.h"
#include "Records/Edits.h"
#include "Records/Lookup.h"

namespace quillorn {

namespace {

struct ClientArguments {
    UUID clientId;
};

struct UpdateClientArguments : UpdateClientRequest {
    UUID clientId;
};

/// What creating and updating share, worded for either.
template <class Arguments>
ToolParameters<Arguments> sharedParameters(RecordUse use) {
    const bool isUpdate = use == RecordUse::update;
    return {
        {"description", &ClientFields::description, isUpdate ? "New client description" : "Client description"},
        {"color", &ClientFields::color, isUpdate ? "New hex color code" : "Hex color code",
         isUpdate ? hexColor() : hexColor(defaultColor)},
        {"icon", &ClientFields::icon, isUpdate ? "New SF Symbol name" : "SF Symbol name"},
    };
}

} // namespace

std::vector<Tool> clientTools() {
    using Create = CreateClientRequest;
    using Update = UpdateClientArguments;
    return {
        readingTool<ClientSearch>("list_clients",
                                  "List all clients. Optionally filter by name or include archived clients.",
                                  {{"name", &ClientSearch::name, "Filter by name (case-insensitive contains)"},
                                   {"includeArchived", &ClientSearch::includeArchived, "Include archived clients"}},
                                  [](const ToolCall& call, const ClientSearch& search) {
                                      return findClients(call.context, search, call.text);
                                  }),
        readingTool<ClientArguments>("get_client",
                                     "Get a specific client by ID, including project counts and time totals.",
                                     {{"clientId", &ClientArguments::clientId, "Client UUID"}},
                                     [](const ToolCall& call, const ClientArguments& arguments) -> Client& {
                                         return findOrThrow<Client>(call.context, arguments.clientId);
                                     }),
        changingTool<Create>("create_client", "Create a new client.",
                             ToolParameters<Create>{{"name", &Create::name, "Client name (required)"}} +
                                 sharedParameters<Create>(RecordUse::whole),
                             [](const ToolCall& call, const Create& arguments) -> Client& {
                                 return createClient(call.context, arguments, call.now);
                             }),
        changingTool<Update>("update_client", "Update a client's name, description, color, icon, or archived status.",
                             ToolParameters<Update>{
                                 {"clientId", &Update::clientId, "Client UUID (required)"},
                                 {"name", &Update::name, "New client name"},
                                 {"isArchived", &Update::isArchived, "Archive or unarchive the client"},
                             } + sharedParameters<Update>(RecordUse::update),
                             [](const ToolCall& call, const Update& arguments) -> Client& {
                                 auto& client = findOrThrow<Client>(call.context, arguments.clientId);
                                 updateClient(call.context, client, arguments, call.now);
                                 return client;
                             }),
    };
}

} // namespace quillorn
