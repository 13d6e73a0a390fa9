#pragma once

#include "HTTP/HttpResponse.h"
#include "Platform/Json.h"

namespace quillorn {

/// All that an answer has in its body.
inline std::string bodyOf(const HttpResponse& response) {
    struct Collector : HttpResponseBodyWriter {
        void write(std::string_view bytes) override { text += bytes; }
        std::string text;
    } collector;
    if (const auto content = response.content(); content.write)
        content.write(collector);
    return collector.text;
}

/// A member of an object; null where there is none.
inline Json member(const Json& object, std::string_view key) {
    const Json* found = object.find(key);
    return found == nullptr ? Json() : *found;
}

} // namespace quillorn
