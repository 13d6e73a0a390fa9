#include "Platform/RunLoop.h"
#include "Support/ManualQueue.h"
#include "Support/RecordingLog.h"

#include <gtest/gtest.h>
#include <stdexcept>

using namespace std::chrono_literals;

namespace quillorn {
namespace {

struct RealQueue {
    RecordingLog log;
    RunLoop queue{log};

    /// Everything that was posted or is due within `time`, and more when the machine is busy.
    void runFor(std::chrono::milliseconds time) {
        queue.after(time, [this] { queue.post([this] { queue.stop(); }); });
        queue.run();
    }
    std::vector<std::string> failures() { return log.lines(); }
};

struct FakeQueue {
    FakeClock clock;
    ManualQueue queue{clock};

    void runFor(std::chrono::milliseconds time) { queue.advance(time); }
    std::vector<std::string> failures() { return queue.failures(); }
};

/// What holds for every main queue.
template <typename Driver>
class MainQueueContract : public testing::Test {
  protected:
    MainQueue::Work note(std::string text) {
        return [this, text] { seen += text; };
    }

    Driver driver;
    MainQueue& queue = driver.queue;
    std::string seen;
};

using Drivers = testing::Types<RealQueue, FakeQueue>;
TYPED_TEST_SUITE(MainQueueContract, Drivers);

TYPED_TEST(MainQueueContract, runsPostedWorkInOrderAndNotAtOnce) {
    this->queue.post([this] {
        this->seen += "a";
        this->queue.post(this->note("d"));
        this->seen += "b";
    });
    this->queue.post(this->note("c"));
    EXPECT_EQ(this->seen, "");
    this->driver.runFor(1ms);
    this->driver.runFor(1ms);
    EXPECT_EQ(this->seen, "abcd");
}

TYPED_TEST(MainQueueContract, timersFireInTheOrderOfTheirTimesUnlessCancelled) {
    this->queue.after(6ms, this->note("3"));
    this->queue.after(2ms, this->note("1"));
    this->queue.after(4ms, this->note("2"));
    this->queue.after(-5ms, this->note("0"));
    this->queue.after(std::chrono::milliseconds::max(), this->note("never"));
    const auto once = this->queue.after(1ms, this->note("once"));
    const auto often = this->queue.every(1ms, this->note("often"));
    for (const auto timer : {once, often, once, MainQueue::TimerId{999'999}})
        this->queue.cancel(timer);
    this->driver.runFor(10ms);
    EXPECT_EQ(this->seen, "0123");
}

TYPED_TEST(MainQueueContract, repeatsUntilCancelledEvenByItself) {
    int ticks = 0;
    MainQueue::TimerId timer{};
    timer = this->queue.every(1ms, [&] {
        if (++ticks == 3)
            this->queue.cancel(timer);
    });
    while (ticks < 3)
        this->driver.runFor(1ms);
    this->driver.runFor(5ms);
    EXPECT_EQ(ticks, 3);
}

TYPED_TEST(MainQueueContract, failuresStopNothing) {
    this->queue.post([] { throw std::runtime_error("first"); });
    this->queue.post([] { throw 1; });
    this->queue.after(1ms, [] { throw std::runtime_error("timer"); });
    this->queue.post(this->note("done"));
    this->driver.runFor(3ms);
    EXPECT_EQ(this->seen, "done");
    EXPECT_EQ(this->driver.failures().size(), 3u);
    EXPECT_NE(this->driver.failures().at(0).find("first"), std::string::npos);
}

TYPED_TEST(MainQueueContract, workMayUseTheQueueWhileItIsDestroyed) {
    struct PostsAtItsEnd {
        MainQueue& queue;
        MainQueue::TimerId other;
        ~PostsAtItsEnd() {
            queue.post([] {});
            queue.cancel(other);
        }
    };
    const auto other = this->queue.after(1h, [] {});
    const auto keep = [&] { return [kept = std::make_shared<PostsAtItsEnd>(this->queue, other)] { (void)kept; }; };
    this->queue.cancel(this->queue.after(1h, keep()));
    this->queue.post(keep());
    this->driver.runFor(1ms);
    this->queue.post(keep());
}

struct RunLoopTest : testing::Test {
    RecordingLog log;
    RunLoop loop{log};
};

TEST_F(RunLoopTest, takesWorkFromManyThreadsInTheOrderOfEach) {
    constexpr int threads = 4;
    constexpr int each = 500;
    std::vector<int> next(threads, 0);
    int total = 0;
    bool inOrder = true;
    const auto main = std::this_thread::get_id();
    std::vector<std::jthread> posters;
    for (std::size_t t = 0; t < threads; ++t)
        posters.emplace_back([&, t] {
            for (int i = 0; i < each; ++i)
                loop.post([&, t, i] {
                    inOrder = inOrder && next[t]++ == i && std::this_thread::get_id() == main;
                    if (++total == threads * each)
                        loop.stop();
                });
        });
    loop.run();
    EXPECT_TRUE(inOrder);
    EXPECT_EQ(total, threads * each);
}

TEST_F(RunLoopTest, wakesForWorkAndEarlierTimersFromOtherThreads) {
    loop.after(1h, [] { FAIL(); });
    std::jthread other([&] { loop.after(1ms, [&] { loop.post([&] { loop.stop(); }); }); });
    loop.run();
}

TEST_F(RunLoopTest, stopLeavesTheRestForTheNextRun) {
    std::string seen;
    loop.stop();
    for (const char* text : {"a", "b"})
        loop.post([&, text] {
            seen += text;
            loop.stop();
        });
    for (const char* expected : {"", "a", "ab"}) {
        loop.run();
        EXPECT_EQ(seen, expected);
    }
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

TEST(ManualQueue, movesTheClockFromTimerToTimer) {
    FakeClock clock;
    ManualQueue queue(clock);
    const Date start = clock.now();
    std::vector<double> times;
    const auto note = [&] { times.push_back(secondsBetween(start, clock.now())); };
    queue.every(400ms, note);
    queue.after(500ms, [&] { queue.after(100ms, note); });
    queue.advance(1s);
    EXPECT_EQ(times, (std::vector{0.4, 0.6, 0.8}));
    EXPECT_EQ(clock.now(), start + 1s);
    EXPECT_EQ(queue.timerCount(), 1u);
}

} // namespace
} // namespace quillorn
