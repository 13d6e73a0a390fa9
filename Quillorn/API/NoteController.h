#pragma once

#include "API/NoteDTO.h"
#include "API/ResourceController.h"
#include "Models/Note.h"

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
