#include "Integration/ProgramTest.h"
#include "Platform/Date.h"
#include "Support/BusDaemon.h"

#include <chrono>
#include <gmock/gmock.h>

namespace quillorn {
namespace {

using testing::HasSubstr;

struct SyncCommand : ProgramTest {
    /// What the program prints on the bus.
    Json said(std::vector<std::string> arguments) const {
        ProgramProcess program(home.path(), {.arguments = std::move(arguments), .environment = onBus});
        EXPECT_EQ(program.wait(), 0) << program.errors();
        return Json::parse(program.output());
    }

    BusDaemon daemon;
    std::map<std::string, std::string> onBus{{"DBUS_SESSION_BUS_ADDRESS", daemon.address()}};
};

TEST_F(SyncCommand, tellsWhatTheServerSeesAndElseTheNetwork) {
    const Json alone = said({"sync", "--json"});
    EXPECT_EQ(alone, said({"sync", "--json"}));
    EXPECT_EQ(*alone.find("status") == Json("idle"), *alone.find("networkAvailable") == Json(true));
    EXPECT_FALSE(alone.find("lastSyncDate"));
    const ServerProcess server(home.path(), {.environment = onBus});
    said({"remind", "Call", "--json"}); // another process than the server
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    Json state;
    while (!state.find("lastSyncDate") && std::chrono::steady_clock::now() < limit)
        state = said({"sync", "--json"});
    EXPECT_TRUE(state.find("lastSyncDate") && parseISO8601(*state.find("lastSyncDate")->asString()));
    EXPECT_EQ(*state.find("statusText"), Json("Synced"));
    EXPECT_THAT(outputOf({"sync"}), testing::StartsWith("Status       ")) << "without a bus";
}

TEST_F(SyncCommand, theDoctorSaysWhyNobodyNotifies) {
    const auto reason = [](const Json& findings) {
        const Json* notifications = findings.find("notifications");
        EXPECT_EQ(*notifications->find("canShow"), Json(false));
        return *notifications->find("reason")->asString();
    };
    EXPECT_EQ(reason(said({"doctor", "--json"})), "no desktop shows them");
    EXPECT_EQ(reason(Json::parse(outputOf({"doctor", "--json"}))), "there is no session bus");
    run({"settings", "set", "notificationsEnabled", "off"});
    EXPECT_THAT(outputOf({"doctor"}), HasSubstr("\nalerts    ok  nobody tells when tasks are due: the setting "));
}

} // namespace
} // namespace quillorn
