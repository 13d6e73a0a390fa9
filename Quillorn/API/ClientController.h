#pragma once

#include "API/ResourceController.h"
#include "Models/Client.h"
#include "Records/ClientDTO.h"

namespace quillorn {

/// Serves /api/clients.
class ClientController : public ResourceController<ClientRows> {
  public:
    using ResourceController::ResourceController;

    HttpResponse list(const HttpRequest& request) const;
    HttpResponse create(const HttpRequest& request) const;
    HttpResponse update(const HttpRequest& request) const;
    HttpResponse projects(const HttpRequest& request) const;
};

} // namespace quillorn
