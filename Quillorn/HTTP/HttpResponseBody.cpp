#include "HTTP/HttpResponseBody.h"

#include "HTTP/HttpErrors.h"

namespace quillorn {

namespace {

std::string serialized(const Json& value) {
    if (!value.asArray() && !value.asObject())
        throw SerializationError(SerializationError::Kind::invalidObject);
    try {
        return value.text();
    } catch (const JsonError&) {
        throw SerializationError(SerializationError::Kind::invalidObject);
    }
}

std::string failure(const std::string& reason) {
    return "Serialisation error: " + reason;
}

} // namespace

HttpResponseBody::HttpResponseBody(std::string bytes, std::optional<std::string> contentType)
    : m_bytes(std::make_shared<const std::string>(std::move(bytes))),
      m_contentType(std::move(contentType)) {}

HttpResponseBody::HttpResponseBody(std::function<std::string()> serialize, std::optional<std::string> contentType)
    : m_serialize(std::move(serialize)),
      m_contentType(std::move(contentType)) {}

HttpResponseBody HttpResponseBody::json(Json value) {
    return {[value = std::move(value)] { return serialized(value); }, "application/json"};
}

HttpResponseBody HttpResponseBody::html(std::string page) {
    return {std::move(page), "text/html"};
}

HttpResponseBody HttpResponseBody::htmlBody(const std::string& content) {
    return {"<html><meta charset=\"UTF-8\"><body>" + content + "</body></html>", std::nullopt};
}

HttpResponseBody HttpResponseBody::text(std::string text) {
    return {std::move(text), std::nullopt};
}

HttpResponseBody HttpResponseBody::data(std::string bytes, std::optional<std::string> contentType) {
    return {std::move(bytes), std::move(contentType)};
}

HttpResponseBody HttpResponseBody::custom(std::function<std::string()> serialize) {
    return {std::move(serialize), std::nullopt};
}

std::shared_ptr<const std::string> HttpResponseBody::bytes() const {
    if (m_bytes)
        return m_bytes;
    std::string text;
    try {
        text = m_serialize();
    } catch (const std::exception& error) {
        text = failure(error.what());
    } catch (...) {
        text = failure("unknown");
    }
    return std::make_shared<const std::string>(std::move(text));
}

} // namespace quillorn
