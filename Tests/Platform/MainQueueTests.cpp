#include "Support/MainQueueContract.h"

#include "Platform/RunLoop.h"
#include "Support/ManualQueue.h"
#include "Support/RecordingLog.h"

using namespace std::chrono_literals;

namespace quillorn {
namespace {

struct RunLoopDriver {
    MainQueue& queue() { return loop; }
    /// More when the machine is busy.
    void runFor(std::chrono::milliseconds time) {
        loop.after(time, [this] { loop.post([this] { loop.stop(); }); });
        loop.run();
    }
    std::size_t failures() const { return log.lines().size(); }

    RecordingLog log;
    RunLoop loop{log};
};

struct ManualDriver {
    MainQueue& queue() { return manual; }
    void runFor(std::chrono::milliseconds time) { manual.advance(time); }
    std::size_t failures() const { return manual.failures().size(); }

    FakeClock clock;
    ManualQueue manual{clock};
};

using Drivers = testing::Types<RunLoopDriver, ManualDriver>;
INSTANTIATE_TYPED_TEST_SUITE_P(Queues, MainQueueContract, Drivers);

struct RunLoopTest : testing::Test {
    RecordingLog log;
    RunLoop loop{log};
};

TEST_F(RunLoopTest, wakesForWorkAndEarlierTimersFromOtherThreads) {
    loop.after(1h, [] { FAIL(); });
    std::jthread other([&] { loop.after(1ms, [&] { loop.post([&] { loop.stop(); }); }); });
    loop.run();
}

TEST_F(RunLoopTest, lateTicksAreNotMadeUpForAndLetOthersRun) {
    int ticks = 0;
    loop.every(100ms, [&] {
        ++ticks;
        const auto end = std::chrono::steady_clock::now() + 150ms;
        while (std::chrono::steady_clock::now() < end) {
        }
        // Were ticks made up for, the next would stand before this.
        loop.post([&] { loop.stop(); });
    });
    loop.run();
    EXPECT_EQ(ticks, 1);
}

} // namespace
} // namespace quillorn
