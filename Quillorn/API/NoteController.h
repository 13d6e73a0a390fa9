#pragma once

#include "API/ResourceController.h"
#include "Models/Note.h"
#include "Records/NoteDTO.h"

namespace quillorn {

/// Serves /api/notes.
class NoteController : public ResourceController<NoteRows> {
  public:
    using ResourceController::ResourceController;

    HttpResponse list(const HttpRequest& request) const;
    HttpResponse create(const HttpRequest& request) const;
    HttpResponse update(const HttpRequest& request) const;
    HttpResponse pin(const HttpRequest& request) const;
};

} // namespace quillorn
