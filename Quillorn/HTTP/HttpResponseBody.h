#pragma once

#include "Platform/Json.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace quillorn {

/// A body whose length is known before it is sent.
class HttpResponseBody {
  public:
    /// `value` must be an array or an object.
    static HttpResponseBody json(Json value);
    static HttpResponseBody html(std::string page);
    /// `content` inside a bare page of UTF-8.
    static HttpResponseBody htmlBody(const std::string& content);
    static HttpResponseBody text(std::string text);
    static HttpResponseBody data(std::string bytes, std::optional<std::string> contentType = {});
    /// What `serialize` returns; it may throw.
    static HttpResponseBody custom(std::function<std::string()> serialize);

    const std::optional<std::string>& contentType() const { return m_contentType; }
    /// Never null. A body that can't be serialised reads "Serialisation error: " and the reason.
    std::shared_ptr<const std::string> bytes() const;

  private:
    HttpResponseBody(std::string bytes, std::optional<std::string> contentType);
    HttpResponseBody(std::function<std::string()> serialize, std::optional<std::string> contentType);

    std::shared_ptr<const std::string> m_bytes; // null where m_serialize makes them
    std::function<std::string()> m_serialize;
    std::optional<std::string> m_contentType;
};

} // namespace quillorn
