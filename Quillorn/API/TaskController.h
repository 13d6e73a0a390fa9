#pragma once

#include "API/ResourceController.h"
#include "Models/ProjectTask.h"
#include "Records/TaskDTO.h"

namespace quillorn {

/// Serves /api/tasks.
class TaskController : public ResourceController<TaskRows> {
  public:
    using ResourceController::ResourceController;

    HttpResponse list(const HttpRequest& request) const;
    HttpResponse create(const HttpRequest& request) const;
    HttpResponse update(const HttpRequest& request) const;
    HttpResponse complete(const HttpRequest& request) const;
    HttpResponse incomplete(const HttpRequest& request) const;
    HttpResponse timeEntries(const HttpRequest& request) const;
    HttpResponse addTags(const HttpRequest& request) const;
    HttpResponse removeTag(const HttpRequest& request) const;
};

} // namespace quillorn
