#pragma once

#include "API/ResourceController.h"
#include "Models/Project.h"
#include "Records/ProjectDTO.h"

namespace quillorn {

/// Serves /api/projects.
class ProjectController : public ResourceController<ProjectRows> {
  public:
    using ResourceController::ResourceController;

    HttpResponse list(const HttpRequest& request) const;
    HttpResponse create(const HttpRequest& request) const;
    HttpResponse update(const HttpRequest& request) const;
    HttpResponse tasks(const HttpRequest& request) const;
    HttpResponse notes(const HttpRequest& request) const;
    HttpResponse timeEntries(const HttpRequest& request) const;
};

} // namespace quillorn
