#include "Platform/NotificationCenter.h"
#include "Support/ManualQueue.h"
#include "Support/Threads.h"

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

TEST_F(NotificationCenterTest, callsTheObserversOfTheNameInOrderWhateverOneThrows) {
    const auto first = center.observe("a", note("1"));
    const auto failing = center.observe("a", [](const Notification&) { throw std::runtime_error("2"); });
    const auto last = center.observe("a", note("3"));
    const auto other = center.observe("b", note("b"));
    post("nobody");
    EXPECT_THROW(post("a"), std::runtime_error); // reaches the poster after all were called
    EXPECT_THROW(post("a"), std::runtime_error); // and the observation goes on
    EXPECT_EQ(seen, "1313");
}

TEST_F(NotificationCenterTest, observationLastsAsLongAsItsToken) {
    Observation kept;
    {
        auto moved = center.observe("a", note("moved"));
        const auto dropped = center.observe("a", note("dropped"));
        kept = std::move(moved);
    }
    post("a");
    EXPECT_EQ(seen, "moved");
    kept = center.observe("a", note("new"));
    post("a");
    kept = {};
    post("a");
    EXPECT_EQ(seen, "movednew");
    auto shortLived = std::make_unique<NotificationCenter>();
    kept = shortLived->observe("a", note("x"));
    shortLived.reset(); // the token outlives the center
}

TEST_F(NotificationCenterTest, queuedObserversAreCalledLaterWithoutTheObject) {
    FakeClock clock;
    ManualQueue queue(clock);
    const auto observer = [&](const Notification& notification) {
        seen += notification.object.has_value() ? std::any_cast<const char*>(notification.object) : "none";
        seen += std::any_cast<const char*>(notification.userInfo.at("k"));
    };
    const auto later = center.observe("a", observer, &queue);
    auto dropped = center.observe("a", note("dropped"), &queue);
    const auto atOnce = center.observe("a", observer);
    center.post({"a", "object", {{"k", "=value "}}});
    EXPECT_EQ(seen, "object=value ");
    dropped = {};
    queue.runPosted();
    EXPECT_EQ(seen, "object=value none=value ");
}

TEST_F(NotificationCenterTest, handlersMayPostObserveAndDrop) {
    Observation self, victim, added;
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

TEST_F(NotificationCenterTest, droppingATokenWaitsForTheHandlerOnAnotherThread) {
    std::promise<void> entered, dropping, mayLeave;
    std::atomic<bool> left = false;
    auto token = center.observe("a", [&](const Notification&) {
        entered.set_value();
        mayLeave.get_future().wait();
        left = true;
    });
    std::jthread poster([&] { post("a"); });
    entered.get_future().wait();
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
    onThreads(4, [&](int) {
        for (int i = 0; i < 300; ++i) {
            auto alive = std::make_unique<int>(1);
            auto token = center.observe("a", [&value = *alive](const Notification&) { EXPECT_EQ(value, 1); });
            post("a");
            token = {};
            alive.reset(); // no handler may still look at it
        }
    });
    EXPECT_EQ(calls, 4 * 300);
}

} // namespace
} // namespace quillorn
