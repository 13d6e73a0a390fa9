#include "Platform/Calendar.h"
#include "Services/DayChangeObserver.h"
#include "Services/SyncMonitor.h"
#include "Support/FakeNetworkPath.h"
#include "Support/FakeNotifications.h"
#include "Support/ManualQueue.h"

#include <gtest/gtest.h>

namespace quillorn {
namespace {

using namespace std::chrono_literals;

TEST(DayChangeObserver, movesAtMidnightAndWhenTimeJumps) {
    struct Case {
        const char *name, *zone, *begin;
        std::chrono::minutes passes, jumps;
        const char* day; // in the end, and told once when it is another one
        int changes;
    };
    const Case cases[] = {
        // clang-format off
        {"before midnight", "UTC", "2026-01-15T12:00:00Z", 719min, 0min, "2026-01-15T00:00:00Z", 0},
        {"midnight", "UTC", "2026-01-15T12:00:00Z", 720min, 0min, "2026-01-16T00:00:00Z", 1},
        {"three nights", "UTC", "2026-01-15T12:00:00Z", 72h, 0min, "2026-01-18T00:00:00Z", 3},
        {"a sleep past midnight", "UTC", "2026-01-15T12:00:00Z", 1min, 30h, "2026-01-16T00:00:00Z", 1},
        {"a short sleep", "UTC", "2026-01-15T12:00:00Z", 1min, 1h, "2026-01-15T00:00:00Z", 0},
        {"set back", "UTC", "2026-01-15T12:00:00Z", 0min, -24h, "2026-01-14T00:00:00Z", 1},
        {"a day of 23 hours", "America/New_York", "2026-03-08T05:00:00Z", 23h, 0min, "2026-03-09T04:00:00Z", 1},
        {"a day of 25 hours", "America/New_York", "2026-11-01T04:00:00Z", 24h, 0min, "2026-11-01T04:00:00Z", 0},
        // clang-format on
    };
    for (const Case& each : cases) {
        FakeClock clock;
        clock.advance(parseISO8601(each.begin).value() - clock.now());
        ManualQueue queue(clock);
        FakeWakeSignals wake;
        const Calendar calendar(each.zone, "en_US");
        {
            DayChangeObserver observer(clock, calendar, queue, wake);
            int changes = 0;
            const Observation token = observer.observe([&] { ++changes; });
            queue.advance(each.passes);
            clock.advance(each.jumps);
            if (each.jumps != 0min)
                wake.tell();
            EXPECT_EQ(formatISO8601(observer.currentDay()), each.day) << each.name;
            EXPECT_EQ(changes, each.changes) << each.name;
            EXPECT_EQ(queue.timerCount(), 1U);
            const Date midnight = calendar.startOfDay(calendar.addDays(observer.currentDay(), 1));
            queue.advance(std::chrono::ceil<std::chrono::milliseconds>(midnight - clock.now()));
            EXPECT_EQ(observer.currentDay(), midnight) << each.name << ", the next midnight";
        }
        EXPECT_EQ(queue.timerCount(), 0U);
    }
}

TEST(SyncMonitor, followsTheNetworkAndTheChangesOfOthers) {
    FakeClock clock;
    ManualQueue queue(clock);
    FakeNetworkPath network;
    SyncMonitor monitor(network, clock, queue);
    const auto state = [&] { return std::string(monitor.status().name()); };
    EXPECT_EQ(monitor.status().word(), "Ready");
    EXPECT_FALSE(monitor.lastSyncDate());
    monitor.handleRemoteChange();
    queue.advance(600ms);
    monitor.handleRemoteChange();
    EXPECT_EQ(monitor.status().word(), "Syncing...");
    queue.advance(400ms);
    EXPECT_EQ(state(), "synced") << "by the first step";
    queue.advance(600ms);
    EXPECT_EQ(monitor.lastSyncDate(), clock.now());

    network.update(false);
    EXPECT_EQ(state(), "offline");
    EXPECT_FALSE(monitor.isNetworkAvailable());
    monitor.handleRemoteChange();
    EXPECT_EQ(state(), "syncing");
    queue.advance(1s);
    EXPECT_EQ(state(), "synced");
    network.update(true);
    EXPECT_EQ(state(), "synced") << "coming back leaves it";
    network.update(false);
    network.update(false);
    EXPECT_EQ(monitor.status().word(), "Offline");
    network.update(true);
    EXPECT_EQ(state(), "idle");
}

} // namespace
} // namespace quillorn
