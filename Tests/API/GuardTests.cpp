#include "API/APITest.h"
#include "Support/TestClient.h"

namespace quillorn {
namespace {

struct GuardTest : APITest {
    /// What the path is answered with for each of these headers.
    void check(int status, const std::string& path, const std::vector<std::string>& headers) const {
        for (const std::string& lines : headers)
            EXPECT_EQ(call("GET", path, "", lines.empty() ? "" : lines + "\r\n").status, status) << path << lines;
    }
    void checkForbidden(const std::string& message, const std::string& path, const std::vector<std::string>& headers) {
        for (const std::string& lines : headers) {
            const Answer answer = call("GET", path, "", lines + "\r\n");
            EXPECT_EQ(answer.body, R"({"error":"Forbidden","message":")" + message + "\"}") << path << lines;
            EXPECT_THAT(answer.head,
                        StartsWith("HTTP/1.1 403 Forbidden\r\nConnection: close\r\nContent-Type: application/json"));
        }
    }
};

const std::string badHost = "Invalid Host header";
const std::string badOrigin = "Cross-origin requests are not allowed";

TEST_F(GuardTest, locallyHostAndOriginMustNameThisMachine) {
    start();
    check(200, "/api/tasks",
          {"", "Host: 127.0.0.1:18080", "Host: LOCALHOST", "Host: [::1]:18080", "Host: [::1",
           "Host: [localhost\r\nOrigin: http://localhost", "Origin: http://localhost:3000", "Origin: HTTPS://LocalHost",
           "Origin: http://[::1]:80"});
    for (const char* path : {"/api/tasks", "/api/health", "/openapi.json", "/docs"})
        checkForbidden(badHost, path, {"Host: example.com"});
    checkForbidden(badHost, "/api/tasks", {"Host: localhost.example.com", "Host: 127.0.0.2", "Host: ::1", "Host:"});
    checkForbidden(badOrigin, "/api/health", {"Host: localhost\r\nOrigin: http://example.com"});
    checkForbidden(badOrigin, "/api/tasks",
                   {"Origin: null", "Origin: localhost", "Origin: http://", "Origin: http://localhost:x",
                    "Origin: http://localhost.example.com", "Origin: http://localhost@example.com",
                    "Origin: http://example.com#@localhost", "Origin: http://example.com\\@localhost"});
    EXPECT_EQ(call("DELETE", "/api/tasks/" + unknownId, "", "Host: example.com\r\n").status, 403);
}

TEST_F(GuardTest, theKeyOpensEverythingButHealthAndDocumentation) {
    writeFile(paths.resources() / "openapi.json", "{}");
    start(false, "s3cret", true);
    const std::string key = "Authorization: Bearer s3cret";
    for (const char* open : {"/api/health", "/openapi.json", "/docs"})
        check(200, open, {""});
    check(404, "/docs/scalar.js", {""});
    for (const char* closed : {"/api/tasks?title=/docs/", "/api/healthy", "/docsx"})
        check(401, closed, {""});
    check(200, "/api/tasks", {key});
    check(401, "/api/tasks",
          {"", "Authorization: bearer s3cret", "Authorization: Bearer  s3cret", "Authorization: Bearer S3cret",
           "Authorization: s3cret"});
    checkForbidden(badHost, "/api/tasks", {key + "\r\nHost: example.com"});
    checkForbidden(badHost, "/api/health", {"Host: example.com"});
    // To the router this is GET /api/clients/docs.
    EXPECT_THAT(answerTo(server->port(), "GET/api/clients /docs HTTP/1.1\r\n\r\n"), StartsWith("HTTP/1.1 401 "));
    const Answer refused = get("/api/tasks");
    EXPECT_EQ(refused.body, R"({"error":"Unauthorized","message":"Valid Bearer token required"})");
    EXPECT_THAT(refused.head,
                HasSubstr("HTTP/1.1 401 Unauthorized\r\nConnection: close\r\nContent-Type: application/json"));
    EXPECT_THAT(refused.head, HasSubstr("\r\nWWW-Authenticate: Bearer"));
}

TEST_F(GuardTest, keysCompareAsTheirBytes) {
    start(false, "schlüssel 鍵", true);
    check(200, "/api/tasks", {"Authorization: Bearer schlüssel 鍵"});
    check(401, "/api/tasks", {"Authorization: Bearer schl\xFCssel 鍵", "Authorization: Bearer schlussel 鍵"});
}

TEST_F(GuardTest, withExternalAccessOnlyTheKeyCounts) {
    start(true, "s3cret");
    check(200, "/api/health", {"Host: example.com\r\nOrigin: http://example.com"});
    check(401, "/api/tasks", {"Host: example.com"});
    check(200, "/api/tasks", {"Host: example.com\r\nAuthorization: Bearer s3cret"});
}

TEST_F(GuardTest, aKeyThatNobodyDemandsIsNotAskedFor) {
    start(false, "s3cret");
    check(200, "/api/tasks", {""});
    checkForbidden(badHost, "/api/tasks", {"Host: example.com"});
}

} // namespace
} // namespace quillorn
