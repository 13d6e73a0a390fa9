#include "Platform/HttpAddress.h"

#include <curl/curl.h>
#include <memory>

namespace quillorn {

namespace {

struct URLReleaser {
    void operator()(CURLU* url) const { curl_url_cleanup(url); }
};
struct TextReleaser {
    void operator()(char* text) const { curl_free(text); }
};
using URLHandle = std::unique_ptr<CURLU, URLReleaser>;

std::string partOf(CURLU* url, CURLUPart part) {
    char* text = nullptr;
    if (curl_url_get(url, part, &text, CURLU_DEFAULT_PORT) != CURLUE_OK)
        return {};
    const std::unique_ptr<char, TextReleaser> owned(text);
    return text;
}

/// Null for what is no address of a web server. Names and passwords in it would be sent as a header of their own, and
/// behind three slashes the library takes the path for the host.
URLHandle parseAddress(const std::string& text) {
    URLHandle url(curl_url());
    if (!url || text.find(":///") != std::string::npos ||
        curl_url_set(url.get(), CURLUPART_URL, text.c_str(), CURLU_DISALLOW_USER) != CURLUE_OK ||
        text.find('\0') != std::string::npos)
        return nullptr;
    const std::string scheme = partOf(url.get(), CURLUPART_SCHEME);
    return scheme == "http" || scheme == "https" ? std::move(url) : nullptr;
}

} // namespace

std::optional<std::string> hostOfAddress(const std::string& address) {
    const URLHandle parsed = parseAddress(address);
    return parsed ? std::optional(partOf(parsed.get(), CURLUPART_HOST)) : std::nullopt;
}

std::optional<std::string> redirectedAddress(const std::string& address, const std::string& location) {
    const URLHandle from = parseAddress(address);
    const URLHandle to = parseAddress(address);
    if (!from || !to || curl_url_set(to.get(), CURLUPART_URL, location.c_str(), CURLU_DISALLOW_USER) != CURLUE_OK)
        return std::nullopt;
    const auto isSame = [&](CURLUPart part) { return partOf(from.get(), part) == partOf(to.get(), part); };
    const bool staysThere = isSame(CURLUPART_SCHEME) && isSame(CURLUPART_HOST) && isSame(CURLUPART_PORT);
    return staysThere ? std::optional(partOf(to.get(), CURLUPART_URL)) : std::nullopt;
}

} // namespace quillorn
