#include "API/APIServer.h"

#include "API/APITest.h"
#include "Support/TestClient.h"

#include <netinet/in.h>
#include <sys/socket.h>

namespace quillorn {
namespace {

using Addresses = APIServer::ListenAddresses;

class APIServerTest : public APITest {
  protected:
    std::string root(const char* host = "localhost") const { return fmt::format("http://{}:{}", host, server->port()); }

    /// This process's descriptor that listens on the server's port.
    int listener() const {
        for (int descriptor = 3; descriptor < 1024; ++descriptor) {
            int listens = 0;
            socklen_t length = sizeof listens;
            if (::getsockopt(descriptor, SOL_SOCKET, SO_ACCEPTCONN, &listens, &length) != 0 || listens == 0)
                continue;
            sockaddr_in address{};
            length = sizeof address;
            if (::getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &length) == 0 &&
                ntohs(address.sin_port) == server->port())
                return descriptor;
        }
        return -1;
    }
};

TEST_F(APIServerTest, aStartBindsReportsAndLogs) {
    EXPECT_FALSE(server->hasServer() || server->isRunning() || server->isExternalAccess());
    EXPECT_EQ(server->port(), 18080);
    EXPECT_EQ(server->lastError(), std::nullopt);
    EXPECT_EQ(server->configuredListenAddresses(), Addresses{});
    EXPECT_EQ(server->authKey(), std::nullopt);
    server->setLastError("old");
    server->start(0, false, std::nullopt, false);
    EXPECT_TRUE(server->hasServer() && !server->isRunning());
    runUntil([&] { return server->isRunning(); });
    EXPECT_NE(server->port(), 0);
    EXPECT_EQ(server->lastError(), std::nullopt);
    EXPECT_EQ(server->configuredListenAddresses(), (Addresses{"127.0.0.1", "::1"}));
    EXPECT_THAT(log.lines(),
                ElementsAre("API Server started on " + root(), "API documentation at " + root() + "/docs"));
    server->stop();
    EXPECT_FALSE(server->isRunning() || server->hasServer());
    EXPECT_THROW(TestClient{server->port()}, std::runtime_error);
    EXPECT_THAT(log.lines(), ElementsAre(testing::_, testing::_, "API Server stopped"));
}

TEST_F(APIServerTest, externalAccessListensEverywhere) {
    server->makeMCPHandler = [] { return [](const HttpRequest&) { return HttpResponse::accepted(); }; };
    start(true, "key");
    EXPECT_EQ(server->configuredListenAddresses(), (Addresses{"0.0.0.0", "::"}));
    EXPECT_TRUE(server->isExternalAccess());
    EXPECT_EQ(server->authKey(), "key");
    EXPECT_THAT(log.lines(), ElementsAre("API Server started on " + root("0.0.0.0") + " (external access)",
                                         "MCP endpoint available at " + root("0.0.0.0") + "/mcp (auth required)",
                                         "API documentation at " + root("0.0.0.0") + "/docs"));
    TestClient elsewhere(server->port(), "127.0.0.9");
    elsewhere.send("GET /api/health HTTP/1.1\r\n\r\n");
    EXPECT_THAT(elsewhere.rest(), StartsWith("HTTP/1.1 200 OK"));
}

TEST_F(APIServerTest, withoutTheKeyThatTheSettingsDemandNothingStarts) {
    const std::tuple<bool, std::optional<std::string>, bool> cases[] = {
        {true, std::nullopt, false}, {true, "", true}, {false, "", true}};
    for (const auto& [external, key, requireAuth] : cases) {
        server->start(1234, external, key, requireAuth);
        EXPECT_FALSE(server->hasServer());
        EXPECT_EQ(server->lastError(), "API server not started: external access and \"require API key\" both need an "
                                       "API key. Set one in Settings.");
        EXPECT_EQ(server->port(), 1234);
        EXPECT_EQ(server->isExternalAccess(), external);
    }
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(APIServerTest, aPortThatIsTakenIsAnErrorAndTheNextStartMayDoBetter) {
    start();
    APIServer second({*store.container, clock, text, paths, log, loop, background, "1"});
    const Observation secondState = second.observe([this] { loop.stop(); });
    second.start(server->port(), false, std::nullopt, false);
    runUntil([&] { return second.lastError().has_value(); });
    const std::string taken = "Can't listen on port " + std::to_string(server->port()) + ": Address already in use";
    EXPECT_FALSE(second.isRunning() || second.hasServer());
    EXPECT_EQ(second.lastError(), taken);
    EXPECT_EQ(log.lines().back(),
              "Failed to start API server: bindFailed(\"Address already in use\"); another program listens on port " +
                  std::to_string(server->port()) + ": stop it, or choose another port");
    server->stop();
    EXPECT_EQ(second.lastError(), taken);
    second.start(std::nullopt, false, std::nullopt, false);
    runUntil([&] { return second.isRunning(); });
    EXPECT_EQ(second.port(), server->port());
    EXPECT_EQ(second.lastError(), std::nullopt);
}

TEST_F(APIServerTest, aStartWhileAnotherIsOnItsWayDoesNothing) {
    server->start(0, false, std::nullopt, false);
    server->start(0, true, "key", true);
    runUntil([&] { return server->isRunning(); });
    EXPECT_FALSE(server->isExternalAccess());
    const auto port = server->port();
    server->start(0, true, "key", true);
    EXPECT_EQ(server->port(), port);
    EXPECT_EQ(get("/api/health").status, 200);
}

TEST_F(APIServerTest, aSocketThatFailsEndsTheServerWithWords) {
    start();
    ASSERT_EQ(::shutdown(listener(), SHUT_RDWR), 0);
    runUntil([&] { return !server->isRunning(); });
    EXPECT_FALSE(server->hasServer());
    EXPECT_EQ(server->lastError(), "The server's socket was closed");
    start();
    EXPECT_EQ(get("/api/health").status, 200);
}

TEST_F(APIServerTest, healthAndDocumentationAreServed) {
    start();
    const Answer health = get("/api/health");
    EXPECT_EQ(health.body, R"({"status":"ok","timestamp":"2026-01-15T12:00:00Z"})");
    EXPECT_EQ(health.head,
              "HTTP/1.1 200 OK\r\nContent-Length: 50\r\nConnection: close\r\nContent-Type: application/json\r\n"
              "Server: Tidewire 9.8");
    EXPECT_EQ(get("/openapi.json").head, "HTTP/1.1 404 Not Found\r\nConnection: close\r\nServer: Tidewire 9.8");
    EXPECT_EQ(get("/docs/scalar.js").status, 404);
    const std::string script(200'000, ';');
    writeFile(paths.resources() / "openapi.json", "{ }");
    writeFile(paths.resources() / "scalar.standalone.min.js", script);
    EXPECT_EQ(get("/openapi.json").body, "{ }");
    EXPECT_EQ(get("/openapi.json").head,
              "HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Type: application/json\r\nServer: Tidewire 9.8");
    EXPECT_TRUE(get("/docs/scalar.js").body.ends_with(";\n" + script));
    EXPECT_THAT(get("/docs/scalar.js").head, HasSubstr("\r\nContent-Type: application/javascript\r\n"));
    const Answer page = get("/docs");
    EXPECT_THAT(page.head, Not(HasSubstr("Content-Type")));
    EXPECT_EQ(page.body, "<html><meta charset=\"UTF-8\"><body><!doctype html><html><head><title>Quillorn API</title>"
                         "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\"></head><body>"
                         "<script id=\"api-reference\" data-url=\"/openapi.json\"></script>"
                         "<script src=\"/docs/scalar.js\"></script></body></html></body></html>");
}

TEST_F(APIServerTest, whatNoRouteServesIsABare404) {
    start();
    for (const std::string target :
         {"PATCH /api/tasks/x", "GET /", "GET /api", "PUT /api/tasks", "GET /api/tasks/x/complete"})
        EXPECT_EQ(answerTo(server->port(), target + " HTTP/1.1\r\n\r\n"),
                  "HTTP/1.1 404 Not Found\r\nConnection: close\r\nServer: Tidewire 9.8\r\n\r\n")
            << target;
}

TEST_F(APIServerTest, mcpIsThereWhenSomebodyAnswersIt) {
    const auto mcp = [this](const char* method, const std::string& headers = "") {
        return answerTo(server->port(),
                        fmt::format("{} /mcp HTTP/1.1\r\n{}Content-Length: 2\r\n\r\n[]", method, headers));
    };
    start(false, "key", true);
    EXPECT_THAT(mcp("POST", "Authorization: Bearer key\r\n"), StartsWith("HTTP/1.1 404 "));
    server->stop();
    server->makeMCPHandler = [] {
        return
            [](const HttpRequest& request) { return HttpResponse::ok(HttpResponseBody::text("mcp " + request.body)); };
    };
    start();
    EXPECT_THAT(mcp("POST"), EndsWith("\r\n\r\nmcp []"));
    EXPECT_EQ(
        mcp("GET"),
        "HTTP/1.1 405 Method Not Allowed\r\nConnection: close\r\nAllow: POST\r\nContent-Type: application/json\r\n"
        "Server: Tidewire 9.8\r\n\r\n{\"error\":\"SSE streaming not supported\"}");
    EXPECT_THAT(mcp("DELETE"), EndsWith("\r\n\r\n{\"error\":\"Session termination not supported\"}"));
    EXPECT_THAT(log.lines(), testing::Contains("MCP endpoint available at " + root() + "/mcp"));
    server->stop();
    start(false, "key", true);
    EXPECT_THAT(mcp("POST"), StartsWith("HTTP/1.1 401 "));
}

} // namespace
} // namespace quillorn
