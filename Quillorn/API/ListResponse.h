#pragma once

#include "API/JsonResponse.h"
#include "Records/Rows.h"

#include <memory>
#include <utility>
#include <vector>

namespace quillorn {

/// A list whose records are made one by one while it is sent. The context keeps the objects alive until then.
template <class Rows>
HttpResponse listResponse(std::unique_ptr<ModelContext> context, std::vector<typename Rows::Object*> objects,
                          Date now) {
    auto rows = std::make_shared<Rows>(*context, std::move(objects), now);
    context->endReading();
    return streamedResponse([owner = std::shared_ptr<ModelContext>(std::move(context)), rows](JsonWriter& writer) {
        writeRows(writer, *rows);
    });
}

} // namespace quillorn
