#pragma once

#include "API/ResourceController.h"
#include "Models/Tag.h"
#include "Records/TagDTO.h"

namespace quillorn {

/// Serves /api/tags.
class TagController : public ResourceController<TagRows> {
  public:
    using ResourceController::ResourceController;

    HttpResponse list(const HttpRequest& request) const;
    HttpResponse create(const HttpRequest& request) const;
    HttpResponse update(const HttpRequest& request) const;
    HttpResponse tasks(const HttpRequest& request) const;
};

} // namespace quillorn
