#include "API/ClientController.h"

#include "API/ClientRequests.h"
#include "API/ProjectDTO.h"
#include "Models/ClientSearch.h"

namespace quillorn {

HttpResponse ClientController::list(const HttpRequest& request) const {
    const ClientSearch search{
        .includeArchived = queryBool(request, "archived").value_or(false),
        .name = queryValue(request, "name"),
    };
    return listOf([&](ModelContext& context) { return findClients(context, search, text()); });
}

HttpResponse ClientController::create(const HttpRequest& request) const {
    return createFrom<CreateClientRequest>(
        request, [](ModelContext& context, const CreateClientRequest& body, Date now) -> Client& {
            Client::Arguments arguments{.name = body.name, .clientDescription = body.description};
            if (body.color)
                arguments.color = *body.color;
            if (body.icon)
                arguments.icon = *body.icon;
            return context.insert<Client>(std::move(arguments), now);
        });
}

HttpResponse ClientController::update(const HttpRequest& request) const {
    return updateFrom<UpdateClientRequest>(
        request, [](ModelContext&, Client& client, const UpdateClientRequest& body, Date now) {
            if (body.name)
                client.setName(*body.name);
            if (body.description)
                client.setClientDescription(body.description);
            if (body.color)
                client.setColor(*body.color);
            if (body.icon)
                client.setIcon(*body.icon);
            if (body.isArchived)
                client.setArchived(*body.isArchived);
            client.setUpdatedAt(now);
        });
}

HttpResponse ClientController::projects(const HttpRequest& request) const {
    const bool includeArchived = queryBool(request, "archived").value_or(false);
    return listInside<ProjectRows>(request, [&](const Client& client) {
        return includeArchived ? std::vector<Project*>(client.projects().begin(), client.projects().end())
                               : client.activeProjects();
    });
}

} // namespace quillorn
