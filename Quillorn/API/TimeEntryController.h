#pragma once

#include "API/ResourceController.h"
#include "Models/TimeEntry.h"
#include "Records/TimeEntryDTO.h"

namespace quillorn {

/// Serves /api/time-entries.
class TimeEntryController : public ResourceController<TimeEntryRows> {
  public:
    using ResourceController::ResourceController;

    HttpResponse list(const HttpRequest& request) const;
    HttpResponse create(const HttpRequest& request) const;
    HttpResponse update(const HttpRequest& request) const;
    HttpResponse stop(const HttpRequest& request) const;
};

} // namespace quillorn
