#include "API/ClientController.h"

#include "Models/ClientSearch.h"
#include "Records/ClientRequests.h"
#include "Records/Edits.h"
#include "Records/ProjectDTO.h"

namespace quillorn {

HttpResponse ClientController::list(const HttpRequest& request) const {
    const ClientSearch search{
        .includeArchived = queryBool(request, "archived").value_or(false),
        .name = queryValue(request, "name"),
    };
    return listOf(request, [&](ModelContext& context) { return findClients(context, search, text()); });
}

HttpResponse ClientController::create(const HttpRequest& request) const {
    return createFrom<CreateClientRequest>(request, createClient);
}

HttpResponse ClientController::update(const HttpRequest& request) const {
    return updateFrom<UpdateClientRequest>(request, updateClient);
}

HttpResponse ClientController::projects(const HttpRequest& request) const {
    const bool includeArchived = queryBool(request, "archived").value_or(false);
    return listInside<ProjectRows>(request, [&](const Client& client) {
        return includeArchived ? std::vector<Project*>(client.projects().begin(), client.projects().end())
                               : client.activeProjects();
    });
}

} // namespace quillorn
