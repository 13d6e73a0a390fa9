#pragma once

#include "API/ListCache.h"
#include "API/ListImage.h"
#include "API/ListResponse.h"
#include "API/RequestHelpers.h"
#include "Platform/Clock.h"
#include "Records/Lookup.h"

#include <memory>
#include <utility>

namespace quillorn {

class Text;

/// What the controllers of all resources have in common: they read one record, delete one, and have the same frame for
/// every change. Each call works in a context of its own, so calls may come from many threads at once.
template <class Rows>
class ResourceController {
  public:
    using Object = typename Rows::Object;

    ResourceController(ModelContainer& container, const Clock& clock, const Text& text, ListCache& lists)
        : m_container(container),
          m_clock(clock),
          m_text(text),
          m_lists(lists) {}

    HttpResponse get(const HttpRequest& request) const {
        return answer([&] {
            const UUID id = pathUUID(request, "id");
            ModelContext context(m_container);
            return jsonResponse(recordOf<Rows>(findOrThrow<Object>(context, id), m_clock.now()));
        });
    }

    HttpResponse remove(const HttpRequest& request) const {
        return answer([&] {
            const UUID id = pathUUID(request, "id");
            ModelContext context(m_container, ModelContext::Intent::update);
            context.remove(findOrThrow<Object>(context, id));
            context.save();
            return noContentResponse();
        });
    }

  protected:
    /// Answers with the records of what `find(context)` returns.
    template <class Find>
    HttpResponse listOf(const HttpRequest& request, const Find& find) const {
        return answer([&] {
            const Date now = m_clock.now();
            if constexpr (ImageableRows<Rows>)
                if (auto response = imageOfList(request, find, now))
                    return std::move(*response);
            auto context = std::make_unique<ModelContext>(m_container);
            auto objects = find(*context);
            return listResponse<Rows>(std::move(context), std::move(objects), now);
        });
    }

    /// Answers with records of another kind that belong to the object that the path names: `select(object)` returns
    /// them.
    template <class Others, class Select>
    HttpResponse listInside(const HttpRequest& request, const Select& select) const {
        return answer([&] {
            const UUID id = pathUUID(request, "id");
            auto context = std::make_unique<ModelContext>(m_container);
            auto objects = select(findOrThrow<Object>(*context, id));
            return listResponse<Others>(std::move(context), std::move(objects), m_clock.now());
        });
    }

    /// Saves and answers with what `make(context, body, now)` inserts.
    template <class Body, class Make>
    HttpResponse createFrom(const HttpRequest& request, const Make& make) const {
        return answer([&] {
            const auto body = decodeBody<Body>(request);
            const Date now = m_clock.now();
            ModelContext context(m_container, ModelContext::Intent::update);
            Object& object = make(context, body, now);
            context.save();
            return jsonResponse(recordOf<Rows>(object, now), 201);
        });
    }

    /// Finds the object that the path names, runs `apply(context, object, body, now)`, saves and answers with it.
    template <class Body, class Apply>
    HttpResponse updateFrom(const HttpRequest& request, const Apply& apply) const {
        return answer([&] {
            const UUID id = pathUUID(request, "id");
            const auto body = decodeBody<Body>(request);
            return change(id,
                          [&](ModelContext& context, Object& object, Date now) { apply(context, object, body, now); });
        });
    }

    /// The same without a body: `apply(object, now)`.
    template <class Apply>
    HttpResponse act(const HttpRequest& request, const Apply& apply) const {
        return answer([&] {
            return change(pathUUID(request, "id"),
                          [&](ModelContext&, Object& object, Date now) { apply(object, now); });
        });
    }

    /// What the two above share: `apply(context, object, now)`.
    template <class Apply>
    HttpResponse change(const UUID& id, const Apply& apply) const {
        const Date now = m_clock.now();
        ModelContext context(m_container, ModelContext::Intent::update);
        auto& object = findOrThrow<Object>(context, id);
        apply(context, object, now);
        context.save();
        return jsonResponse(recordOf<Rows>(object, now));
    }

    const Text& text() const { return m_text; }

  private:
    /// Absent where the list is not to be kept, or can't be.
    template <class Find>
    std::optional<HttpResponse> imageOfList(const HttpRequest& request, const Find& find, Date now) const {
        auto visit = m_lists.visit(request, now);
        if (!visit.isRepeated)
            return std::nullopt;
        ModelContext context(m_container);
        if (!visit.image) {
            visit.image = imageOf(Rows(context, find(context), now), now);
            m_lists.keep(request, visit, visit.image);
            return visit.image ? std::optional(imageResponse(visit.image)) : std::nullopt;
        }
        if (visit.image->moving.empty())
            return imageResponse(visit.image);
        auto moving = movingRecords<Rows>(context, *visit.image, now);
        // A commit since the visit may have changed the others as well.
        if (!moving || !m_lists.isCurrent(visit))
            return std::nullopt;
        return imageResponse(visit.image, std::move(*moving));
    }

    ModelContainer& m_container;
    const Clock& m_clock;
    const Text& m_text;
    ListCache& m_lists;
};

} // namespace quillorn
