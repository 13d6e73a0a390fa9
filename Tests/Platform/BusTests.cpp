#include "Platform/Linux/SystemdBus.h"
#include "Support/BusDaemon.h"
#include "Support/RecordingLog.h"
#include "Support/RunUntil.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;

namespace quillorn {
namespace {

using List = BusValue::List;
using Dictionary = BusValue::Dictionary;

constexpr const char* serviceName = "com.quillorn.Test";
constexpr const char* path = "/com/quillorn/Test";

/// Two processes' worth of connections to a daemon of their own.
class BusTest : public testing::Test {
  protected:
    void waitUntil(const std::function<bool()>& holds) { runUntil(loop, holds); }

    BusReply ask(BusCall call) {
        std::optional<BusReply> reply;
        const Observation token = client.call(std::move(call), [&](const BusReply& got) { reply = got; });
        waitUntil([&] { return reply.has_value(); });
        return reply.value_or(BusMessage{});
    }
    BusReply ask(const std::string& member, BusMessage arguments) {
        return ask({serviceName, path, "com.quillorn.Test1", member, std::move(arguments)});
    }
    std::string errorName(const BusReply& reply) { return reply.error() ? reply.error()->name() : ""; }

    /// Methods that give back what they got, or fail in several ways.
    BusInterface interface() {
        const auto echo = [](const BusMessage& message, const BusMethod::Responder& answer) { answer(message); };
        return {"com.quillorn.Test1",
                {{"Echo", {{"v", "value"}}, {{"v", "same"}}, echo},
                 {"Many", {{"a{sv}", "map"}, {"a(sxd)", "rows"}}, {{"a{sv}", "map"}, {"a(sxd)", "rows"}}, echo},
                 {"Later",
                  {},
                  {{"s", "word"}},
                  [this](const BusMessage&, const BusMethod::Responder& answer) {
                      loop.after(1ms, [answer] { answer(BusMessage{"s", {"now"}}); });
                  }},
                 {"Refuse",
                  {},
                  {},
                  [](const BusMessage&, const auto&) { throw BusError("com.quillorn.Error.No", "Not now"); }},
                 {"Break", {}, {}, [](const BusMessage&, const auto&) { throw std::runtime_error("broken"); }},
                 {"Hold", {}, {}, [this](const BusMessage&, const auto& answer) { held = answer; }},
                 {"Forget", {}, {}, [](const BusMessage&, const auto&) {}},
                 {"Lie", {}, {{"s", "word"}}, [](const BusMessage&, const auto& answer) {
                      answer(BusMessage{"s", {1}});
                  }}}};
    }

    BusMethod::Responder held;
    BusDaemon daemon;
    RecordingLog log;
    RunLoop loop{log};
    SystemdBus server{BusKind::session, daemon.address(), loop, &log};
    SystemdBus client{BusKind::session, daemon.address(), loop, nullptr};
};

TEST_F(BusTest, callsReachExportedObjectsWithEveryKindOfValue) {
    bool isOwned = false;
    const Observation name = server.ownName(serviceName, [&](bool owned) { isOwned = owned; });
    const Observation object = server.exportObject(path, interface());
    waitUntil([&] { return isOwned; });

    const BusValue values[] = {true,
                               -7,
                               std::int64_t{1} << 40,
                               2.5,
                               "Grüße",
                               List{"a", "b"},
                               List{List{1}, "x"},
                               Dictionary{{"k", Dictionary{{"deep", List{}}}}},
                               BusValue::variant("y", 255),
                               BusValue::variant("a{us}", List{List{7, "seven"}}),
                               BusValue::variant("v", BusValue::variant("q", 3))};
    for (const BusValue& value : values) {
        const BusReply reply = ask("Echo", {"v", {value}});
        ASSERT_EQ(errorName(reply), "");
        EXPECT_EQ(reply.message().values, List{value});
        EXPECT_EQ(reply.message().values[0].variantSignature(), value.variantSignature());
    }
    const List many{Dictionary{{"a", 1}, {"b", "two"}}, List{List{"row", 1, 0.5}, List{"row", 2, -1.0}}};
    EXPECT_EQ(ask("Many", {"a{sv}a(sxd)", many}).message().values, many);
    EXPECT_EQ(ask("Later", {}).message().values, List{"now"});

    const BusReply refused = ask("Refuse", {});
    EXPECT_EQ(errorName(refused), "com.quillorn.Error.No");
    EXPECT_STREQ(refused.error()->what(), "Not now");
    EXPECT_STREQ(ask("Break", {}).error()->what(), "broken");
    EXPECT_THAT(log.lines(), ElementsAre(HasSubstr("broken")));
    EXPECT_STREQ(ask("Forget", {}).error()->what(), "There was no answer");
    EXPECT_EQ(errorName(ask("Lie", {})), "org.freedesktop.DBus.Error.InvalidArgs");
    EXPECT_EQ(errorName(ask("Echo", {"s", {"bare"}})), "org.freedesktop.DBus.Error.InvalidArgs");
    EXPECT_EQ(errorName(ask("None", {})), "org.freedesktop.DBus.Error.UnknownMethod");
    // What can't be sent is told in the same way.
    for (const BusMessage& bad : {BusMessage{"y", {256}},
                                  {"s", {1}},
                                  {"s", {"\xff"}},
                                  {"s", {}},
                                  {"", {1}},
                                  {"(s", {List{"a"}}},
                                  {"s", {std::string("a\0b", 3)}}})
        EXPECT_EQ(errorName(ask("Echo", bad)), "org.freedesktop.DBus.Error.InvalidArgs") << bad.signature;

    const BusReply description = ask({serviceName, path, "org.freedesktop.DBus.Introspectable", "Introspect"});
    EXPECT_THAT(*description.message().values[0].asString(),
                HasSubstr(R"x(<arg type="a(sxd)" name="rows" direction="in")x"));
}

TEST_F(BusTest, namesAreGivenOnAndServicesComeAndGo) {
    std::vector<bool> first;
    std::vector<bool> second;
    std::vector<bool> seen;
    std::optional<Observation> one = server.ownName(serviceName, [&](bool owned) { first.push_back(owned); });
    waitUntil([&] { return !first.empty(); });
    const Observation watch = client.observeService(serviceName, [&](bool there) { seen.push_back(there); });
    const Observation other = client.observeService("com.quillorn.Nobody", [&](bool there) { EXPECT_FALSE(there); });
    std::optional<Observation> two = client.ownName(serviceName, [&](bool owned) { second.push_back(owned); });
    waitUntil([&] { return !second.empty() && !seen.empty(); });
    EXPECT_THAT(second, ElementsAre(false));

    one.reset();
    waitUntil([&] { return second.size() == 2 && seen.size() == 3; });
    two.reset();
    waitUntil([&] { return seen.size() == 4; });
    EXPECT_THAT(first, ElementsAre(true));
    EXPECT_THAT(second, ElementsAre(false, true));
    EXPECT_THAT(seen, ElementsAre(true, false, true, false));
}

TEST_F(BusTest, whatWasAskedForHoldsForTheNextDaemon) {
    std::vector<std::string> names;
    std::vector<bool> connected;
    std::vector<bool> owned;
    const Observation state = server.observeConnection([&](bool now) { connected.push_back(now); });
    const Observation name = server.ownName(serviceName, [&](bool now) { owned.push_back(now); });
    const Observation object = server.exportObject(path, interface());
    const Observation signals =
        client.observeSignal({"org.freedesktop.DBus", "", "org.freedesktop.DBus", "NameOwnerChanged"},
                             [&](const BusSignal& signal) { names.push_back(*signal.message.values[0].asString()); });
    waitUntil([&] { return owned.size() == 1 && client.isConnected(); });

    std::string failure;
    const Observation lost = client.call({serviceName, path, "com.quillorn.Test1", "Hold"},
                                         [&](const BusReply& reply) { failure = errorName(reply); });
    waitUntil([&] { return held != nullptr; });
    daemon.stop();
    waitUntil([&] { return connected.size() == 2 && owned.size() == 2 && !client.isConnected(); });
    EXPECT_THAT(failure, testing::StartsWith("org.freedesktop.DBus.Error."));
    held(BusMessage{}); // an answer that comes too late
    EXPECT_EQ(errorName(ask("Later", {})), "org.freedesktop.DBus.Error.Disconnected");

    daemon.start();
    waitUntil([&] { return owned.size() == 3 && client.isConnected(); });
    EXPECT_EQ(ask("Later", {}).message().values, List{"now"});
    // Only what happens behind the client's return is sure to be heard.
    names.clear();
    const Observation other = server.ownName("com.quillorn.Other", [](bool) {});
    waitUntil([&] { return std::ranges::find(names, "com.quillorn.Other") != names.end(); });
    EXPECT_THAT(connected, ElementsAre(true, false, true));
    EXPECT_THAT(owned, ElementsAre(true, false, true));
    EXPECT_THAT(log.lines(), ElementsAre(HasSubstr("no connection to the session bus")));
}

TEST_F(BusTest, nothingArrivesAfterTheTokenAndTimeoutsAreErrors) {
    bool isOwned = false;
    const Observation name = server.ownName(serviceName, [&](bool owned) { isOwned = owned; });
    const Observation object = server.exportObject(path, interface());
    waitUntil([&] { return isOwned; });

    bool arrived = false;
    std::optional<Observation> token =
        client.call({serviceName, path, "com.quillorn.Test1", "Hold"}, [&](const BusReply&) { arrived = true; });
    waitUntil([&] { return held != nullptr; });
    token.reset();
    held(BusMessage{});
    held = nullptr;
    client.send({serviceName, path, "com.quillorn.Test1", "Hold"});
    waitUntil([&] { return held != nullptr; }); // a round trip later
    EXPECT_FALSE(arrived);
    held = nullptr;
    EXPECT_EQ(errorName(ask({serviceName, path, "com.quillorn.Test1", "Hold", {}, 20ms})),
              "org.freedesktop.DBus.Error.NoReply");
}

TEST(BusConnection, aBusThatIsNotThereIsNoFaultAndCostsNothing) {
    RecordingLog log;
    RunLoop loop(log);
    SystemdBus bus(BusKind::system, "unix:path=/nowhere/bus", loop, &log);
    std::string error;
    const Observation call = bus.call({serviceName, path, "", "Call"}, [&](const BusReply& reply) {
        error = reply.error()->name();
        loop.stop();
    });
    bus.send({serviceName, path, "", "Call"});
    loop.run();
    EXPECT_EQ(error, "org.freedesktop.DBus.Error.Disconnected");
    EXPECT_FALSE(bus.isConnected());
    EXPECT_THAT(log.lines(), ElementsAre("D-Bus: no connection to the system bus: No such file or directory"));
}

} // namespace
} // namespace quillorn
