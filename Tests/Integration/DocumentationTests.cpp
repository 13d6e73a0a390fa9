#include "Integration/ProgramTest.h"

#include <gmock/gmock.h>

// /docs as a browser shows it.

namespace quillorn {
namespace {

using testing::Contains;
using testing::Each;
using testing::StartsWith;

/// What pages asked for, by the browser's own log; not what the browser does for itself.
std::vector<std::string> requestsOfPages(const std::filesystem::path& log) {
    std::vector<std::string> requests;
    const Json whole = Json::parse(readFile(log));
    for (const Json& event : *whole.find("events")->asArray()) {
        const Json* parameters = event.find("params");
        const Json* page = parameters ? parameters->find("initiator") : nullptr;
        if (page && page->asString()->starts_with("http"))
            requests.push_back(*parameters->find("url")->asString());
    }
    return requests;
}

TEST_F(ServerTest, theDocumentationAsksNobodyElseAndOffersNoServices) {
    if (!std::filesystem::exists(QUILLORN_CHROMIUM))
        GTEST_SKIP() << "Chromium is not installed";
    const std::string address = "http://127.0.0.1:" + std::to_string(server.port()) + "/";
    ProgramProcess browser(
        home.path(),
        {.program = "/usr/bin/timeout",
         .arguments = {"60", QUILLORN_CHROMIUM, "--headless", "--no-sandbox", "--disable-gpu",
                       "--disable-dev-shm-usage", "--no-first-run", "--disable-background-networking",
                       "--disable-component-update", "--disable-sync",
                       "--host-resolver-rules=MAP * ~NOTFOUND, EXCLUDE 127.0.0.1",
                       "--user-data-dir=" + (home / "profile").string(), "--log-net-log=" + (home / "log").string(),
                       "--virtual-time-budget=5000", "--dump-dom", address + "docs"}});
    ASSERT_EQ(browser.wait(), 0) << browser.errors();
    EXPECT_THAT(requestsOfPages(home / "log"), AllOf(Contains(address + "openapi.json"), Each(StartsWith(address))));
    EXPECT_NE(browser.output().find("List clients"), std::string::npos);
    for (const char* service : {"Ask AI", "Generate MCP", "Connect MCP", "Developer Tools", "client.scalar.com"})
        EXPECT_EQ(browser.output().find(service), std::string::npos) << service;
}

} // namespace
} // namespace quillorn
