#include "Platform/RunLoop.h"
#include "Support/ManualQueue.h"
#include "Support/RecordingLog.h"

#include <gtest/gtest.h>
#include <stdexcept>

using namespace std::chrono_literals;

namespace quillorn {
namespace {

struct RunLoopTest : testing::Test {
    /// Everything that was posted or is due within `time`, and more when the machine is busy.
    void runFor(std::chrono::milliseconds time) {
        loop.after(time, [this] { loop.post([this] { loop.stop(); }); });
        loop.run();
    }
    MainQueue::Work note(std::string text) {
        return [this, text] { seen += text; };
    }

    RecordingLog log;
    RunLoop loop{log};
    std::string seen;
};

TEST_F(RunLoopTest, runsPostedWorkInOrderAndNotAtOnce) {
    loop.post([this] {
        seen += "a";
        loop.post(note("d"));
        seen += "b";
    });
    loop.post(note("c"));
    EXPECT_EQ(seen, "");
    runFor(1ms);
    runFor(1ms);
    EXPECT_EQ(seen, "abcd");
}

TEST_F(RunLoopTest, timersFireInTheOrderOfTheirTimesUnlessCancelled) {
    loop.after(6ms, note("3"));
    loop.after(2ms, note("1"));
    loop.after(4ms, note("2"));
    loop.after(-5ms, note("0"));
    loop.after(std::chrono::milliseconds::max(), note("never"));
    const auto once = loop.after(1ms, note("once"));
    const auto often = loop.every(1ms, note("often"));
    for (const auto timer : {once, often, once, MainQueue::TimerId{999'999}})
        loop.cancel(timer);
    runFor(10ms);
    EXPECT_EQ(seen, "0123");
}

TEST_F(RunLoopTest, repeatsUntilCancelledEvenByItself) {
    int ticks = 0;
    MainQueue::TimerId timer{};
    timer = loop.every(1ms, [&] {
        if (++ticks == 3)
            loop.cancel(timer);
    });
    while (ticks < 3)
        runFor(1ms);
    runFor(5ms);
    EXPECT_EQ(ticks, 3);
}

TEST_F(RunLoopTest, failuresStopNothing) {
    loop.post([] { throw std::runtime_error("first"); });
    loop.post([] { throw 1; });
    loop.after(1ms, [] { throw std::runtime_error("timer"); });
    loop.post(note("done"));
    runFor(3ms);
    EXPECT_EQ(seen, "done");
    EXPECT_EQ(log.lines().size(), 3u);
    EXPECT_NE(log.lines().at(0).find("first"), std::string::npos);
}

TEST_F(RunLoopTest, workMayUseTheQueueWhileItIsDestroyed) {
    struct PostsAtItsEnd {
        MainQueue& queue;
        MainQueue::TimerId other;
        ~PostsAtItsEnd() {
            queue.post([] {});
            queue.cancel(other);
        }
    };
    const auto other = loop.after(1h, [] {});
    const auto keep = [&] { return [kept = std::make_shared<PostsAtItsEnd>(loop, other)] { (void)kept; }; };
    loop.cancel(loop.after(1h, keep()));
    loop.post(keep());
    runFor(1ms);
    loop.post(keep());
}

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
