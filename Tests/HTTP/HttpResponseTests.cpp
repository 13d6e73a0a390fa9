#include "HTTP/HttpErrors.h"
#include "Support/Answers.h"

#include <gmock/gmock.h>
#include <limits>

namespace quillorn {
namespace {

using Headers = HttpResponse::Headers;

TEST(HttpResponse, okTakesContentTypeAndLengthFromItsBody) {
    const auto fails = []() -> std::string { throw SerializationError(SerializationError::Kind::notSupported); };
    const std::tuple<HttpResponseBody, std::string, std::string> cases[] = {
        // no type: no header
        {HttpResponseBody::json(Json::Object{{"b", 1}, {"a", true}}), R"({"a":true,"b":1})", "application/json"},
        {HttpResponseBody::json(Json::Array{}), "[]", "application/json"},
        {HttpResponseBody::json("text"), "Serialisation error: invalidObject", "application/json"},
        {HttpResponseBody::json(Json::Array{std::numeric_limits<double>::infinity()}),
         "Serialisation error: invalidObject", "application/json"},
        {HttpResponseBody::html("<p>"), "<p>", "text/html"},
        {HttpResponseBody::htmlBody("<p>"), "<html><meta charset=\"UTF-8\"><body><p></body></html>", ""},
        {HttpResponseBody::text("caf\xC3\xA9"), "caf\xC3\xA9", ""},
        {HttpResponseBody::data(std::string("\0x", 2), "image/png"), std::string("\0x", 2), "image/png"},
        {HttpResponseBody::data(""), "", ""},
        {HttpResponseBody::custom([] { return "made"; }), "made", ""},
        {HttpResponseBody::custom(fails), "Serialisation error: notSupported", ""},
        {HttpResponseBody::custom([]() -> std::string { throw 1; }), "Serialisation error: unknown", ""},
    };
    for (const auto& [body, bytes, contentType] : cases) {
        const auto response = HttpResponse::ok(body);
        EXPECT_EQ(bodyOf(response), bytes);
        EXPECT_EQ(response.content().length, static_cast<std::int64_t>(bytes.size()));
        Headers expected{{"Server", "Tidewire Unspecified"}};
        if (!contentType.empty())
            expected["Content-Type"] = contentType;
        EXPECT_EQ(response.responseHeaders("Unspecified"), expected) << bytes;
    }
}

TEST(HttpResponse, badRequestMayHaveABodyAndRawItsOwnHeaders) {
    const auto bad = HttpResponse::badRequest(HttpResponseBody::json(Json::Object{}));
    EXPECT_EQ(bodyOf(bad), "{}");
    EXPECT_EQ(bad.content().length, 2);
    EXPECT_EQ(bad.responseHeaders("1"), (Headers{{"Server", "Tidewire 1"}})); // no type
    const Headers own{{"Server", "mine"}, {"server", "too"}};
    const auto raw = HttpResponse::raw(200, "Fine", own, [](auto& writer) { writer.write("body"); });
    EXPECT_EQ(bodyOf(raw), "body");
    EXPECT_EQ(raw.content().length, -1);
    EXPECT_EQ(raw.responseHeaders("1"), own);
}

} // namespace
} // namespace quillorn
