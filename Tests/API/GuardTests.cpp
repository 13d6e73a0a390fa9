#include "API/APITest.h"
#include "Support/TestClient.h"

namespace quillorn {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

struct GuardCase {
    std::string path;
    std::string headers;
    int status;
    std::string message{};
};

class GuardTest : public APITest {
  protected:
    void check(const std::vector<GuardCase>& cases) {
        for (const GuardCase& each : cases) {
            const Answer answer = call("GET", each.path, "", each.headers);
            EXPECT_EQ(answer.status, each.status) << each.path << " " << each.headers;
            if (each.status == 403) {
                EXPECT_EQ(answer.body, R"({"error":"Forbidden","message":")" + each.message + "\"}") << each.headers;
                EXPECT_THAT(answer.head, HasSubstr("HTTP/1.1 403 Forbidden\r\nContent-Type: application/json"));
            }
        }
    }
};

const std::string badHost = "Invalid Host header";
const std::string badOrigin = "Cross-origin requests are not allowed";

TEST_F(GuardTest, locallyHostAndOriginMustNameThisMachine) {
    start();
    check({
        {"/api/tasks", "", 200},
        {"/api/tasks", "Host: 127.0.0.1:18080\r\n", 200},
        {"/api/tasks", "Host: LOCALHOST\r\n", 200},
        {"/api/tasks", "Host: [::1]:18080\r\n", 200},
        {"/api/tasks", "Host: [::1\r\n", 200},
        {"/api/tasks", "Host: example.com\r\n", 403, badHost},
        {"/api/health", "Host: example.com\r\n", 403, badHost},
        {"/openapi.json", "Host: localhost.example.com\r\n", 403, badHost},
        {"/docs", "Host: 127.0.0.2\r\n", 403, badHost},
        {"/api/tasks", "Host: ::1\r\n", 403, badHost},
        {"/api/tasks", "Host:\r\n", 403, badHost},
        {"/api/tasks", "Host: [localhost\r\nOrigin: http://localhost\r\n", 200},
        {"/api/tasks", "Origin: http://localhost:3000\r\n", 200},
        {"/api/tasks", "Origin: HTTPS://LocalHost\r\n", 200},
        {"/api/tasks", "Origin: http://[::1]:80\r\n", 200},
        {"/api/tasks", "Origin: null\r\n", 403, badOrigin},
        {"/api/tasks", "Origin: localhost\r\n", 403, badOrigin},
        {"/api/tasks", "Origin: http://\r\n", 403, badOrigin},
        {"/api/tasks", "Origin: http://localhost:x\r\n", 403, badOrigin},
        {"/api/tasks", "Origin: http://localhost.example.com\r\n", 403, badOrigin},
        {"/api/tasks", "Origin: http://localhost@example.com\r\n", 403, badOrigin},
        {"/api/tasks", "Origin: http://example.com#@localhost\r\n", 403, badOrigin},
        {"/api/tasks", "Origin: http://example.com\\@localhost\r\n", 403, badOrigin},
        {"/api/health", "Host: localhost\r\nOrigin: http://example.com\r\n", 403, badOrigin},
    });
    EXPECT_EQ(call("DELETE", "/api/tasks/" + unknownId, "", "Host: example.com\r\n").status, 403);
}

TEST_F(GuardTest, theKeyOpensEverythingButHealthAndDocumentation) {
    writeFile(paths.resources() / "openapi.json", "{}");
    start(false, "s3cret", true);
    check({
        {"/api/health", "", 200},
        {"/openapi.json", "", 200},
        {"/docs", "", 200},
        {"/docs/scalar.js", "", 404},
        {"/api/tasks", "", 401},
        {"/api/tasks?title=/docs/", "", 401},
        {"/api/healthy", "", 401},
        {"/docsx", "", 401},
        {"/api/tasks", "Authorization: Bearer s3cret\r\n", 200},
        {"/api/tasks", "Authorization: bearer s3cret\r\n", 401},
        {"/api/tasks", "Authorization: Bearer  s3cret\r\n", 401},
        {"/api/tasks", "Authorization: Bearer S3cret\r\n", 401},
        {"/api/tasks", "Authorization: s3cret\r\n", 401},
        {"/api/tasks", "Authorization: Bearer s3cret\r\nHost: example.com\r\n", 403, badHost},
        {"/api/health", "Host: example.com\r\n", 403, badHost},
    });
    // To the router this is GET /api/clients/docs.
    EXPECT_THAT(answerTo(server->port(), "GET/api/clients /docs HTTP/1.1\r\n\r\n"),
                testing::StartsWith("HTTP/1.1 401 "));
    const Answer refused = get("/api/tasks");
    EXPECT_EQ(refused.body, R"({"error":"Unauthorized","message":"Valid Bearer token required"})");
    EXPECT_THAT(refused.head, HasSubstr("HTTP/1.1 401 Unauthorized\r\nContent-Type: application/json"));
    EXPECT_THAT(refused.head, HasSubstr("\r\nWWW-Authenticate: Bearer"));
}

TEST_F(GuardTest, withExternalAccessOnlyTheKeyCounts) {
    start(true, "s3cret");
    check({
        {"/api/health", "Host: example.com\r\nOrigin: http://example.com\r\n", 200},
        {"/api/tasks", "Host: example.com\r\n", 401},
        {"/api/tasks", "Host: example.com\r\nAuthorization: Bearer s3cret\r\n", 200},
    });
}

TEST_F(GuardTest, aKeyThatNobodyDemandsIsNotAskedFor) {
    start(false, "s3cret");
    check({{"/api/tasks", "", 200}, {"/api/tasks", "Host: example.com\r\n", 403, badHost}});
}

} // namespace
} // namespace quillorn
