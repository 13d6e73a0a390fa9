#include "HTTP/HttpServer.h"

#include "Support/RecordingLog.h"
#include "Support/TestClient.h"

#include <future>
#include <gmock/gmock.h>
#include <memory>

namespace quillorn {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::StartsWith;

const std::string keep = "Connection: keep-alive\r\n";

std::string get(const std::string& path, const std::string& headers = {}) {
    return "GET " + path + " HTTP/1.1\r\n" + headers + "\r\n";
}

std::string post(const std::string& path, const std::string& body, const std::string& headers = {}) {
    return "POST " + path + " HTTP/1.1\r\nContent-Length: " + std::to_string(body.size()) + "\r\n" + headers + "\r\n" +
           body;
}

HttpResponse text(std::string body) {
    return HttpResponse::ok(HttpResponseBody::text(std::move(body)));
}

HttpHandler streaming(std::function<void(HttpResponseBodyWriter&)> write) {
    return [write](const HttpRequest&) { return HttpResponse::raw(200, "OK", {}, write); };
}

class HttpServerTest : public ::testing::Test {
  protected:
    HttpServerTest() {
        server.listenAddressIPv4 = "127.0.0.1";
        server.GET["/text"] = [](const HttpRequest&) { return text("hello"); };
        server.POST["/echo"] = [](const HttpRequest& request) { return text(request.body); };
        server.get["/echo/:x"] = [](const HttpRequest& request) {
            return text(request.params.at(":x") + " " + *request.address);
        };
        server.GET["/raw"] = streaming([](auto& writer) { writer.write("raw"); });
    }

    std::uint16_t started() {
        server.start(0, true);
        return server.port();
    }

    RecordingLog log;
    HttpServer server{log, "7"};
};

TEST_F(HttpServerTest, sendsLengthAndKeepsTheConnectionWhenAsked) {
    TestClient client(started());
    for (int i = 0; i < 3; ++i) {
        client.send(get("/text", keep));
        EXPECT_EQ(client.response(), "HTTP/1.1 200 OK\r\nContent-Length: 5\r\nConnection: keep-alive\r\n"
                                     "Server: Tidewire 7\r\n\r\nhello");
    }
    client.send(get("/text"));
    EXPECT_EQ(client.rest(),
              "HTTP/1.1 200 OK\r\nContent-Length: 5\r\nConnection: close\r\nServer: Tidewire 7\r\n\r\nhello");
}

TEST_F(HttpServerTest, closesTheConnectionBehindResponsesWithoutALength) {
    const auto port = started();
    EXPECT_EQ(answerTo(port, get("/raw", keep)),
              "HTTP/1.1 200 OK\r\nConnection: close\r\nServer: Tidewire 7\r\n\r\nraw");
    EXPECT_EQ(answerTo(port, get("/nowhere", keep)),
              "HTTP/1.1 404 Not Found\r\nConnection: close\r\nServer: Tidewire 7\r\n\r\n");
}

TEST_F(HttpServerTest, takesPipelinedAndScatteredRequests) {
    TestClient client(started());
    client.send(post("/echo", "abc", keep) + get("/echo/a%20b", keep) + "GET /t");
    EXPECT_EQ(bodyOf(client.response()), "abc");
    EXPECT_EQ(bodyOf(client.response()), "a b 127.0.0.1");
    for (const char character : std::string("ext HTTP/1.1\r\n\r\n"))
        client.send(std::string_view(&character, 1));
    EXPECT_EQ(bodyOf(client.rest()), "hello");
}

TEST_F(HttpServerTest, middlewareRunsInOrderBeforeTheRouter) {
    std::vector<std::string> calls; // the only client waits for each answer, so nothing runs at once
    server.middleware.push_back([&](const HttpRequest& request) -> std::optional<HttpResponse> {
        calls.push_back("first " + request.path);
        return std::nullopt;
    });
    server.middleware.push_back([&](const HttpRequest& request) -> std::optional<HttpResponse> {
        calls.push_back("second");
        return request.path == "/raw" ? std::optional(HttpResponse::forbidden()) : std::nullopt;
    });
    const auto port = started();
    EXPECT_EQ(bodyOf(answerTo(port, get("/text"))), "hello");
    EXPECT_THAT(answerTo(port, get("/raw")), StartsWith("HTTP/1.1 403 Forbidden"));
    EXPECT_THAT(calls, ElementsAre("first /text", "second", "first /raw", "second"));
}

TEST_F(HttpServerTest, refusesAtTheHeadOfARequest) {
    server.middleware.push_back([](const HttpRequest&) { return std::optional(text("no")); });
    const auto port = started();
    for (const std::string promise : {"Content-Length: 9\r\n", "Transfer-Encoding: chunked\r\n"}) {
        TestClient client(port);
        client.send("POST /echo HTTP/1.1\r\n" + keep + promise + "\r\n"); // and no body
        EXPECT_EQ(client.rest(), "HTTP/1.1 200 OK\r\nContent-Length: 2\r\nConnection: close\r\n"
                                 "Server: Tidewire 7\r\n\r\nno");
    }
}

TEST_F(HttpServerTest, longAnswersArriveWholeBesideInputThatNobodyReads) {
    const auto answer = std::make_shared<const std::string>(16'000'000, 'x'); // the server may outlast this test
    server.GET["/long"] = streaming([answer](auto& writer) { writer.write(*answer); });
    EXPECT_EQ(bodyOf(answerTo(started(), get("/long") + std::string(100'000, 'y'))).size(), answer->size());
}

TEST_F(HttpServerTest, registersForEachMethodAndForAll) {
    const HttpHandler handler = [](const HttpRequest& request) { return text(request.method); };
    server.DELETE["/d"] = handler;
    server.PATCH["/p"] = handler;
    server.head["/h"] = handler;
    server.put["/p"] = handler;
    server["/all"] = handler;
    server.notFoundHandler = [](const HttpRequest&) { return text("none"); };
    const auto port = started();
    const std::pair<std::string, std::string> cases[] = {
        {"DELETE /d", "DELETE"}, {"PATCH /p", "PATCH"}, {"HEAD /h", "HEAD"},   {"PUT /p", "PUT"},
        {"odd /all", "odd"},     {"GET /d", "none"},    {"HEAD /text", "none"}};
    for (const auto& [line, body] : cases)
        EXPECT_EQ(bodyOf(answerTo(port, line + " HTTP/1.1\r\n\r\n")), body);
}

TEST_F(HttpServerTest, whatHandlersAndBodiesThrowBecomesALine) {
    server.GET["/error"] = [](const HttpRequest&) -> HttpResponse { throw std::runtime_error("broken"); };
    server.GET["/number"] = [](const HttpRequest&) -> HttpResponse { throw 1; };
    server.GET["/half"] = streaming([](auto& writer) {
        writer.write("half");
        throw std::runtime_error("no more");
    });
    const auto port = started();
    for (const auto* path : {"/error", "/number"})
        EXPECT_EQ(answerTo(port, get(path, keep)),
                  "HTTP/1.1 500 Internal Server Error\r\nConnection: close\r\nServer: Tidewire 7\r\n\r\n");
    EXPECT_THAT(answerTo(port, get("/half", keep)), EndsWith("\r\n\r\nhalf"));
    EXPECT_THAT(log.lines(), ElementsAre("Handler of GET /error failed: broken", "Handler of GET /number failed",
                                         "Failed to send response: no more"));
}

} // namespace
} // namespace quillorn
