#pragma once

#include "HTTP/HttpRequest.h"
#include "HTTP/HttpResponse.h"
#include "Platform/Date.h"
#include "Platform/UUID.h"

#include <functional>

namespace quillorn {

class Clock;
class ModelContainer;
class ModelContext;
class ProjectTask;
class Text;

/// Serves /api/tasks. Each call works in a context of its own, so calls may come from many threads at once.
class TaskController {
  public:
    TaskController(ModelContainer& container, const Clock& clock, const Text& text)
        : m_container(container),
          m_clock(clock),
          m_text(text) {}

    HttpResponse list(const HttpRequest& request) const;
    HttpResponse get(const HttpRequest& request) const;
    HttpResponse create(const HttpRequest& request) const;
    HttpResponse update(const HttpRequest& request) const;
    HttpResponse remove(const HttpRequest& request) const;
    HttpResponse complete(const HttpRequest& request) const;
    HttpResponse incomplete(const HttpRequest& request) const;
    HttpResponse timeEntries(const HttpRequest& request) const;
    HttpResponse addTags(const HttpRequest& request) const;
    HttpResponse removeTag(const HttpRequest& request) const;

  private:
    using Change = std::function<void(ModelContext&, ProjectTask&, Date now)>;

    /// Finds the task, applies the change, saves and answers with the task.
    HttpResponse change(const UUID& id, const Change& apply) const;

    ModelContainer& m_container;
    const Clock& m_clock;
    const Text& m_text;
};

} // namespace quillorn
