#include "API/JsonResponse.h"

#include <memory>
#include <utility>

namespace quillorn {

namespace {

const HttpResponse::Headers jsonHeaders{{"Content-Type", "application/json"}};

} // namespace

std::string reasonPhrase(int status) {
    switch (status) {
    case 200:
        return "OK";
    case 201:
        return "Created";
    case 204:
        return "No Content";
    case 400:
        return "Bad Request";
    case 404:
        return "Not Found";
    case 500:
        return "Internal Server Error";
    default:
        return "Unknown";
    }
}

HttpResponse jsonResponse(const std::function<void(JsonWriter&)>& value, int status) {
    auto text = std::make_shared<std::string>();
    try {
        *text = jsonText(value);
    } catch (const JsonError&) {
        return HttpResponse::internalServerError();
    }
    return HttpResponse::raw(status, reasonPhrase(status), jsonHeaders,
                             [text](HttpResponseBodyWriter& body) { body.write(*text); });
}

HttpResponse streamedResponse(std::function<void(JsonWriter&)> value) {
    return jsonBodyResponse([value = std::move(value)](HttpResponseBodyWriter& body) {
        JsonWriter writer([&](std::string_view piece) { body.write(piece); });
        value(writer);
        writer.finish();
    });
}

HttpResponse jsonBodyResponse(HttpResponse::BodyWriter body) {
    return HttpResponse::raw(200, reasonPhrase(200), jsonHeaders, std::move(body));
}

HttpResponse noContentResponse() {
    return HttpResponse::raw(204, reasonPhrase(204));
}

} // namespace quillorn
