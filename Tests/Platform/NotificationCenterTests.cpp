#include "Platform/NotificationCenter.h"
#include "Support/ManualQueue.h"

#include <atomic>
#include <future>
#include <gtest/gtest.h>
#include <stdexcept>

namespace quillorn {
namespace {

class NotificationCenterTest : public testing::Test {
  protected:
    NotificationCenter::Handler note(std::string text) {
        return [this, text](const Notification&) { seen += text; };
    }
    void post(const char* name) { center.post({name, {}, {}}); }

    NotificationCenter center;
    std::string seen;
};

TEST_F(NotificationCenterTest, callsTheObserversOfTheNameInOrder) {
    const auto first = center.observe("a", note("1"));
    const auto second = center.observe("a", note("2"));
    const auto other = center.observe("b", note("b"));
    post("a");
    post("nobody");
    EXPECT_EQ(seen, "12");
}

TEST_F(NotificationCenterTest, handsOverObjectAndValues) {
    int object = 0;
    const auto token = center.observe("a", [&](const Notification& notification) {
        *std::any_cast<int*>(notification.object) = std::any_cast<int>(notification.userInfo.at("value"));
    });
    center.post({"a", &object, {{"value", 7}}});
    EXPECT_EQ(object, 7);
}

TEST_F(NotificationCenterTest, observationLastsAsLongAsItsToken) {
    NotificationCenter::Token kept;
    {
        auto moved = center.observe("a", note("moved"));
        const auto dropped = center.observe("a", note("dropped"));
        kept = std::move(moved);
    }
    post("a");
    EXPECT_EQ(seen, "moved");
    kept = center.observe("a", note("new"));
    post("a");
    EXPECT_EQ(seen, "movednew");
    kept = {};
    post("a");
    EXPECT_EQ(seen, "movednew");
}

TEST_F(NotificationCenterTest, tokensMayOutliveTheCenter) {
    NotificationCenter::Token token;
    {
        NotificationCenter shortLived;
        token = shortLived.observe("a", note("x"));
    }
    token = {};
}

TEST_F(NotificationCenterTest, queuedObserversAreCalledLaterWithoutTheObject) {
    FakeClock clock;
    ManualQueue queue(clock);
    const auto token = center.observe(
        "a",
        [&](const Notification& notification) {
            seen +=
                notification.object.has_value() ? "object" : std::any_cast<std::string>(notification.userInfo.at("k"));
        },
        &queue);
    auto dropped = center.observe("a", note("dropped"), &queue);
    center.post({"a", 5, {{"k", std::string("value")}}});
    EXPECT_EQ(seen, "");
    dropped = {};
    queue.runPosted();
    EXPECT_EQ(seen, "value");
}

TEST_F(NotificationCenterTest, handlersMayPostObserveAndDrop) {
    NotificationCenter::Token self;
    NotificationCenter::Token victim;
    NotificationCenter::Token added;
    auto holding = std::make_shared<int>(3);
    const std::weak_ptr<int> held = holding;
    self = center.observe("a", [&, holding = std::move(holding)](const Notification&) {
        self = {};
        victim = {};
        added = center.observe("a", note("added "));
        post("b");
        seen += std::to_string(*holding); // what the handler holds lives until it returns
    });
    victim = center.observe("a", note("victim "));
    const auto b = center.observe("b", note("b "));
    post("a");
    EXPECT_EQ(seen, "b 3");
    EXPECT_TRUE(held.expired());
    post("a");
    EXPECT_EQ(seen, "b 3added ");
}

TEST_F(NotificationCenterTest, aFailureReachesThePosterAfterAllWereCalled) {
    const auto first = center.observe("a", [](const Notification&) { throw std::runtime_error("first"); });
    const auto second = center.observe("a", note("second"));
    EXPECT_THROW(post("a"), std::runtime_error);
    EXPECT_EQ(seen, "second");
    EXPECT_THROW(post("a"), std::runtime_error); // and the observation goes on
}

TEST_F(NotificationCenterTest, droppingATokenWaitsForTheHandlerOnAnotherThread) {
    std::promise<void> entered;
    std::promise<void> mayLeave;
    std::atomic<bool> left = false;
    auto token = center.observe("a", [&](const Notification&) {
        entered.set_value();
        mayLeave.get_future().wait();
        left = true;
    });
    std::jthread poster([&] { post("a"); });
    entered.get_future().wait();
    std::promise<void> dropping;
    std::atomic<bool> leftBeforeDropEnded = false;
    std::jthread dropper([&] {
        dropping.set_value();
        token = {};
        leftBeforeDropEnded = left.load();
    });
    dropping.get_future().wait();
    mayLeave.set_value();
    dropper.join();
    EXPECT_TRUE(leftBeforeDropEnded);
}

TEST_F(NotificationCenterTest, manyThreadsPostObserveAndDropAtOnce) {
    std::atomic<int> calls = 0;
    const auto counter = center.observe("a", [&](const Notification&) { ++calls; });
    {
        std::vector<std::jthread> threads;
        for (int t = 0; t < 4; ++t)
            threads.emplace_back([&] {
                for (int i = 0; i < 300; ++i) {
                    auto alive = std::make_unique<int>(1);
                    auto token = center.observe("a", [&value = *alive](const Notification&) { EXPECT_EQ(value, 1); });
                    post("a");
                    token = {};
                    alive.reset(); // no handler may still look at it
                }
            });
    }
    EXPECT_EQ(calls, 4 * 300);
}

} // namespace
} // namespace quillorn
