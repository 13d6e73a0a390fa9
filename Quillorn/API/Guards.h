#pragma once

#include "HTTP/HttpRequest.h"
#include "HTTP/HttpResponse.h"

#include <functional>
#include <optional>
#include <string>

namespace quillorn {

/// Looks at the head of a request, before there is a body; its answer, if any, ends the request.
using Guard = std::function<std::optional<HttpResponse>(const HttpRequest&)>;

/// Lets through what names this machine as its host and, where it comes from a web page, as its origin: so no page of
/// another site reaches the server through the user's browser.
Guard hostGuard();
/// Demands the key as a Bearer token, except for health and documentation.
Guard bearerGuard(const std::string& key);

} // namespace quillorn
