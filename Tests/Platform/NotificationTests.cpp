#include "Platform/DesktopNotifications.h"
#include "Platform/Linux/SystemdBus.h"
#include "Support/BusDaemon.h"
#include "Support/FakeNotifications.h"
#include "Support/ManualQueue.h"
#include "Support/RecordingLog.h"
#include "Support/RunUntil.h"

#include <gtest/gtest.h>

namespace quillorn {
namespace {

using namespace std::chrono_literals;
using List = BusValue::List;

NotificationRequest request(std::string name, Date moment) {
    return {.identifier = name, .title = "Task Due", .body = std::move(name), .moment = moment};
}

TEST(PendingNotifications, areShownOnceAtTheirMomentWhateverTheClockDoes) {
    struct Step {
        std::chrono::minutes passes;      // as the queue's timers notice
        std::chrono::minutes jumps;       // asleep, or set
        std::vector<const char*> showing; // in the end
    };
    struct Case {
        const char* name;
        std::vector<Step> steps;
    };
    const Case cases[] = {
        {"awake", {{60min, 0min, {}}, {1min, 0min, {"at 61"}}, {40h, 0min, {"at 61", "at 2400"}}}},
        {"asleep over both", {{0min, 50h, {"at 61", "at 2400"}}, {48h, 0min, {"at 61", "at 2400"}}}},
        {"asleep until before", {{0min, 60min, {}}, {1min, 0min, {"at 61"}}}},
        {"set back before it", {{60min, -30min, {}}, {30min, 0min, {}}, {1min, 0min, {"at 61"}}}},
        {"set back after it", {{61min, -30min, {"at 61"}}, {31min, 0min, {"at 61"}}}},
        {"far ahead", {{0min, -96h, {}}, {96h, 0min, {}}, {61min, 0min, {"at 61"}}}},
    };
    for (const Case& each : cases) {
        FakeClock clock;
        ManualQueue queue(clock);
        FakeWakeSignals wake;
        FakeNotifications notifications(clock, queue, wake);
        const Date begin = clock.now();
        for (const auto& [passes, jumps, showing] : each.steps) {
            // As a refresh does, before the jump is known.
            const auto addAll = [&] {
                notifications.removePending(notifications.pending());
                for (const auto& [name, after] : {std::pair("at 61", 61min), std::pair("at 2400", 2400min)})
                    if (begin + after > clock.now())
                        notifications.add(request(name, begin + after));
            };
            addAll();
            queue.advance(passes);
            clock.advance(jumps);
            addAll();
            wake.tell();
            std::vector<std::string> shown;
            for (const NotificationRequest& one : notifications.shown)
                shown.push_back(one.body);
            EXPECT_EQ(shown, std::vector<std::string>(showing.begin(), showing.end())) << each.name;
            EXPECT_LE(queue.timerCount(), 1U);
        }
    }
}

/// A desktop's notification service, as far as it is asked, on a bus of its own.
struct DesktopNotificationsTest : testing::Test {
    void waitUntil(const std::function<bool()>& holds) { runUntil(loop, holds); }
    void serve(List capabilities) {
        const auto ask = [capabilities](const BusMessage&, const auto& answer) {
            answer(BusMessage{"as", List{BusValue(capabilities)}});
        };
        const auto notify = [this](const BusMessage& message, const auto& answer) {
            notified.push_back(message.values);
            answer(BusMessage{"u", {7}});
        };
        const std::string types[] = {"s", "u", "s", "s", "s", "as", "a{sv}", "i"};
        std::vector<BusMethod::Argument> in;
        for (const std::string& type : types)
            in.push_back({type, "argument" + std::to_string(in.size())});
        object = desktop.exportObject("/org/freedesktop/Notifications", {"org.freedesktop.Notifications",
                                                                         {{"GetCapabilities", {}, {{"as", "all"}}, ask},
                                                                          {"Notify", in, {{"u", "id"}}, notify}}});
        name = desktop.ownName("org.freedesktop.Notifications", [](bool) {});
        waitUntil([&] { return ours.authorization() == NotificationAuthorization::authorized; });
    }
    void show(const std::string& body) {
        ours.add({.identifier = body,
                  .title = "Task Due",
                  .body = body,
                  .actions = {{"done", "Mark Done"}},
                  .moment = clock.now()});
    }

    BusDaemon daemon;
    RecordingLog log;
    RunLoop loop{log};
    SystemClock clock;
    FakeWakeSignals wake;
    SystemdBus desktop{BusKind::session, daemon.address(), loop, nullptr};
    SystemdBus client{BusKind::session, daemon.address(), loop, nullptr};
    bool mayShow = true;
    DesktopNotifications ours{client, clock, loop, wake, log, [this] { return mayShow; }};
    std::vector<List> notified;
    Observation object, name;
};

TEST_F(DesktopNotificationsTest, areThereWhileTheServiceIs) {
    waitUntil([&] { return ours.authorization() == NotificationAuthorization::denied; });
    serve({});
    name = {};
    waitUntil([&] { return ours.authorization() == NotificationAuthorization::denied; });
    show("Nobody is there");
    waitUntil([&] { return log.contains("could not be shown"); });
    EXPECT_TRUE(notified.empty());
}

TEST_F(DesktopNotificationsTest, areShownAsTheServiceCan) {
    const BusValue actions(List{"done", "Mark Done"});
    const std::pair<List, List> cases[] = {{{}, {"a <b> & c d", List{}}},
                                           {{"body-markup", "actions"}, {"a &lt;b&gt; &amp; c d", actions}}};
    for (const auto& [capabilities, shown] : cases) {
        notified.clear();
        serve(capabilities);
        mayShow = false;
        show("by another process");
        waitUntil([&] { return ours.pending().empty(); });
        mayShow = true;
        show("a <b> & c\nd");
        waitUntil([&] { return !notified.empty(); });
        const List& call = notified.front();
        EXPECT_EQ(List({call[0], call[3], call[4], call[5]}), List({"Quillorn", "Task Due", shown[0], shown[1]}));
        name = {};
        object = {};
        waitUntil([&] { return ours.authorization() == NotificationAuthorization::denied; });
    }
}

} // namespace
} // namespace quillorn
