#include "Platform/Background.h"
#include "Platform/Observers.h"
#include "Platform/RunLoop.h"
#include "Platform/Task.h"
#include "Support/ManualQueue.h"
#include "Support/RecordingLog.h"

#include <gmock/gmock.h>
#include <stdexcept>
#include <string>
#include <thread>

namespace quillorn {
namespace {

using testing::ElementsAre;
using namespace std::chrono_literals;

using Words = std::vector<std::string>;

struct AtEnd {
    ~AtEnd() { words.push_back("gone"); }
    Words& words;
};

struct Tasks : testing::Test {
    Task<int> later(int value) {
        const AtEnd end{words};
        co_await Pause(queue, 10ms);
        if (value < 0)
            throw std::runtime_error("negative");
        co_return value;
    }

    Task<> sum(int first, int second) {
        const int one = co_await later(first);
        const int two = co_await later(second);
        words.push_back(std::to_string(one + two));
    }

    FakeClock clock;
    ManualQueue queue{clock};
    Words words;
    TaskScope scope;
};

TEST_F(Tasks, awaitTasksAndBringTheirValues) {
    scope.start(sum(2, 3));
    EXPECT_THAT(words, ElementsAre());
    queue.advance(20ms);
    EXPECT_THAT(words, ElementsAre("gone", "gone", "5"));
    EXPECT_TRUE(scope.isIdle());
}

TEST_F(Tasks, bringErrorsToTheQueueThatNobodyCatches) {
    scope.start(sum(2, -1));
    queue.advance(20ms);
    EXPECT_THAT(queue.failures(), ElementsAre("negative"));
    EXPECT_TRUE(scope.isIdle());
}

TEST_F(Tasks, endWhereTheyWaitWhenTheyAreGivenUp) {
    Completion<int> answer;
    auto waits = [](Words& said, Completion<int> number) -> Task<> {
        const AtEnd end{said};
        said.push_back(std::to_string(co_await number));
    };
    {
        TaskScope owner;
        owner.start(waits(words, answer));
        owner.start(sum(1, 1));
    }
    EXPECT_THAT(words, ElementsAre("gone", "gone"));
    EXPECT_EQ(queue.timerCount(), 0U);
    answer.succeed(7);
    EXPECT_EQ(words.size(), 2U);
}

TEST_F(Tasks, mayGiveUpThemselves) {
    auto givesUp = [](Tasks& test) -> Task<> {
        const AtEnd end{test.words};
        co_await Pause(test.queue, 1ms);
        test.scope.cancel();
        test.words.push_back("still here");
        co_await Pause(test.queue, 1ms);
        test.words.push_back("never");
    };
    scope.start(givesUp(*this));
    queue.advance(5ms);
    EXPECT_THAT(words, ElementsAre("still here", "gone"));
    EXPECT_EQ(queue.timerCount(), 0U);
}

TEST(BackgroundTasks, bringResultsAndErrorsToTheMainThread) {
    RecordingLog log;
    RunLoop queue(log);
    Background background(queue);
    TaskScope scope;
    Words words;
    auto works = [](Background& elsewhere, RunLoop& main, Words& said) -> Task<> {
        const auto mainThread = std::this_thread::get_id();
        const bool moved =
            co_await elsewhere.run([=](const std::stop_token&) { return std::this_thread::get_id() != mainThread; });
        said.push_back(moved && std::this_thread::get_id() == mainThread ? "there and back" : "astray");
        try {
            co_await elsewhere.run([](const std::stop_token&) { throw std::runtime_error("full"); },
                                   Background::Priority::low);
        } catch (const std::runtime_error& error) {
            said.push_back(error.what());
        }
        main.stop();
    };
    scope.start(works(background, queue, words));
    queue.run();
    EXPECT_THAT(words, ElementsAre("there and back", "full"));
}

TEST(BackgroundTasks, areAskedToStopByEitherEnd) {
    RecordingLog log;
    RunLoop queue(log);
    TaskScope kept;
    auto waits = [](Background& elsewhere) -> Task<> {
        co_await elsewhere.run([](const std::stop_token& stop) {
            while (!stop.stop_requested())
                std::this_thread::yield();
        });
    };
    Background background(queue);
    {
        TaskScope owner;
        owner.start(waits(background));
    }
    const auto other = std::make_unique<Background>(queue);
    kept.start(waits(*other));
}

TEST(ObserversOfAThing, mayComeAndGoWhileTheyAreTold) {
    Words words;
    Observers<int> observers;
    Observation second;
    Observation late;
    Observation first = observers.add([&](int value) {
        words.push_back("first " + std::to_string(value));
        second = {};
        late = observers.add([&](int) { words.push_back("late"); });
        throw std::runtime_error("first failed");
    });
    second = observers.add([&](int) { words.push_back("second"); });
    const Observation third = observers.add([&](int) {
        words.push_back("third");
        first = {};
    });
    EXPECT_THROW(observers.tell(1), std::runtime_error);
    observers.tell(2);
    EXPECT_THAT(words, ElementsAre("first 1", "third", "third", "late"));
}

} // namespace
} // namespace quillorn
