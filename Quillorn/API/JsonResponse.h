#pragma once

#include "API/WireRecord.h"
#include "HTTP/HttpResponse.h"
#include "Store/ModelContext.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace quillorn {

/// The words behind the status codes that the API answers with.
std::string reasonPhrase(int status);

/// Writes into memory first: a value that can't be written makes it a bare 500.
HttpResponse jsonResponse(const std::function<void(JsonWriter&)>& value, int status);
/// `value` runs while the answer is sent, in pieces, so that a long list never stands in memory as a whole.
HttpResponse streamedResponse(std::function<void(JsonWriter&)> value);
/// 204, the answer to a deletion.
HttpResponse noContentResponse();

template <WireRecord Record>
HttpResponse jsonResponse(const Record& record, int status = 200) {
    return jsonResponse([&](JsonWriter& writer) { write(writer, record); }, status);
}

/// A list whose records are made one by one while it is sent. `Rows` says `size()` and `fill(index, record)`, and has
/// loaded by now whatever that needs: the context keeps the rows alive, but reads nothing any more.
template <WireRecord Record, class Rows>
HttpResponse listResponse(std::unique_ptr<ModelContext> context, Rows rows) {
    context->endReading();
    return streamedResponse([owner = std::shared_ptr<ModelContext>(std::move(context)),
                             all = std::make_shared<Rows>(std::move(rows))](JsonWriter& writer) {
        writer.beginArray();
        Record record; // one for all: its texts keep their memory
        for (std::size_t i = 0; i < all->size(); ++i) {
            all->fill(i, record);
            write(writer, record);
        }
        writer.endArray();
    });
}

} // namespace quillorn
