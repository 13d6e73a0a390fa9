#include "Models/ProjectTask.h"
#include "Platform/Background.h"
#include "Platform/Calendar.h"
#include "Platform/DesktopNotifications.h"
#include "Platform/Linux/SystemdBus.h"
#include "Platform/WakeSignals.h"
#include "Services/NotificationService.h"
#include "Store/MainContext.h"
#include "Support/BusDaemon.h"
#include "Support/ManualQueue.h"
#include "Support/MemorySettings.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <gmock/gmock.h>
#include <thread>

namespace quillorn {
namespace {

using namespace std::chrono_literals;
using List = BusValue::List;

/// A service on the bus that is not ours.
struct Mock {
    std::string service, path, interface;
};
const Mock desktop{"org.freedesktop.Notifications", "/org/freedesktop/Notifications", "org.freedesktop.Notifications"};
const Mock login{"org.freedesktop.login1", "/org/freedesktop/login1", "org.freedesktop.login1.Manager"};

/// Notifications on a bus with a desktop and a login service, at a clock of the test's own.
struct DesktopServiceTest : testing::Test, TestStore {
    ChildProcess::Launch mock(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), {"-m", "dbusmock", "--template"});
        return {"/usr/bin/python3",
                std::move(arguments),
                {{{"DBUS_SESSION_BUS_ADDRESS", daemon.address()}, {"DBUS_SYSTEM_BUS_ADDRESS", daemon.address()}}}};
    }
    void waitUntil(const std::function<bool()>& holds) {
        const auto limit = std::chrono::steady_clock::now() + 20s;
        while (!holds() && std::chrono::steady_clock::now() < limit) {
            std::this_thread::yield();
            queue.runPosted();
        }
        ASSERT_TRUE(holds()) << "waited in vain";
    }
    List ask(const Mock& who, std::string member, BusMessage arguments) {
        std::optional<BusReply> reply;
        const Observation token =
            bus.call({who.service, who.path, "org.freedesktop.DBus.Mock", std::move(member), std::move(arguments)},
                     [&](const BusReply& got) { reply = got; });
        waitUntil([&] { return reply.has_value(); });
        return reply->message().values;
    }
    void emit(const Mock& who, const char* signal, const char* signature, List values) {
        ask(who, "EmitSignal", {"sssav", {who.interface, signal, signature, std::move(values)}});
    }
    /// The calls that show something.
    List shown() { return *ask(desktop, "GetMethodCalls", {"s", {"Notify"}})[0].asList(); }

    FakeClock clock;
    ManualQueue queue{clock};
    BusDaemon daemon;
    ChildProcess desktopMock{mock({"notification_daemon", "-p", R"({"capabilities": "actions body"})"})};
    ChildProcess loginMock{mock({"logind"})};
    SystemdBus bus{BusKind::session, daemon.address(), queue, nullptr};
    std::unique_ptr<WakeSignals> wake = systemWakeSignals(queue, bus);
    DesktopNotifications notifications{bus, clock, queue, *wake, log};
    MainContext main{*container, queue, log};
    Calendar calendar{"UTC", "en_US"};
    MemorySettings settings;
    Background background{queue};
    NotificationService service{{notifications, clock, calendar, settings, queue, log}, main, background};
};

TEST_F(DesktopServiceTest, whatASleepPassesIsShownOnceAndAClickIsDone) {
    bool hasLogin = false;
    const Observation presence = bus.observeService(login.service, [&](bool isThere) { hasLogin = isThere; });
    service.follow();
    auto& task = make<ProjectTask>(main.context(), {.title = "Offer", .dueDate = testNow + 1h});
    task.setDueHasTime(true);
    main.save();
    const auto isDone = [this, id = task.id()] { return main.context().find<ProjectTask>(id)->isCompleted(); };
    waitUntil([&] { return hasLogin && service.authorizationStatus() == NotificationAuthorization::authorized; });
    service.refreshAll();
    waitUntil([&] { return notifications.pending().size() == 1; });

    clock.advance(2h); // asleep, so no timer notices
    emit(login, "PrepareForSleep", "b", {BusValue::variant("b", false)});
    waitUntil([&] { return shown().size() == 1; });
    const List call = *shown()[0].asList()->at(1).asList();
    EXPECT_EQ(List({call[0], call[3], call[4], call[5]}),
              List({"Quillorn", "Task Due", "Offer", List{"done", "Mark Done", "start", "Start Timer"}}));
    emit(login, "PrepareForSleep", "b", {BusValue::variant("b", false)});
    clock.advance(-90min);
    service.refreshAll();
    queue.advance(40min);

    emit(desktop, "ActionInvoked", "us", {BusValue::variant("u", 99), BusValue::variant("s", "done")});
    emit(desktop, "ActionInvoked", "us", {BusValue::variant("u", 1), BusValue::variant("s", "erase")});
    EXPECT_FALSE(isDone());
    emit(desktop, "ActionInvoked", "us", {BusValue::variant("u", 1), BusValue::variant("s", "done")});
    waitUntil(isDone);
    EXPECT_EQ(shown().size(), 1U);
}

} // namespace
} // namespace quillorn
