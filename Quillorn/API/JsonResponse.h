#pragma once

#include "HTTP/HttpResponse.h"
#include "Records/WireRecord.h"

#include <functional>
#include <string>

namespace quillorn {

/// The words behind the status codes that the API answers with.
std::string reasonPhrase(int status);

/// Writes into memory first: a value that can't be written makes it a bare 500.
HttpResponse jsonResponse(const std::function<void(JsonWriter&)>& value, int status);
/// `value` runs while the answer is sent, in pieces, so that a long list never stands in memory as a whole.
HttpResponse streamedResponse(std::function<void(JsonWriter&)> value);
/// What `body` writes is JSON already.
HttpResponse jsonBodyResponse(HttpResponse::BodyWriter body);
/// 204, the answer to a deletion.
HttpResponse noContentResponse();

template <WireRecord Record>
HttpResponse jsonResponse(const Record& record, int status = 200) {
    return jsonResponse([&](JsonWriter& writer) { write(writer, record); }, status);
}

} // namespace quillorn
