#include "HTTP/WorkerPool.h"

#include "Support/ScopedLimit.h"

#include <atomic>
#include <future>
#include <gtest/gtest.h>
#include <thread>

namespace quillorn {
namespace {

using namespace std::chrono_literals;

TEST(WorkerPool, jobsNeverWaitForEachOther) {
    constexpr int count = 200;
    std::promise<void> allRun;
    const auto ready = allRun.get_future().share();
    std::atomic<int> running = 0;
    WorkerPool pool;
    for (int i = 0; i < count; ++i)
        pool.submit([&, ready] {
            if (++running == count)
                allRun.set_value();
            ready.wait();
        });
    EXPECT_EQ(ready.wait_for(10s), std::future_status::ready);
    EXPECT_EQ(pool.threadCount(), 200U);
}

TEST(WorkerPool, idleThreadsEndAfterAWhile) {
    WorkerPool pool(1ms);
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < 50; ++i)
            pool.submit([] {});
        const auto deadline = std::chrono::steady_clock::now() + 10s;
        while (pool.threadCount() > 0 && std::chrono::steady_clock::now() < deadline)
            std::this_thread::yield();
        EXPECT_EQ(pool.threadCount(), 0U);
    }
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // these need address space of their own
TEST(WorkerPool, aThreadThatCanNotBeHadIsAnErrorAndLosesTheJob) {
    WorkerPool pool;
    std::promise<void> end;
    const auto held = std::make_shared<std::shared_future<void>>(end.get_future().share());
    std::size_t accepted = 0;
    const auto submitAll = [&] {
        const ScopedLimit full(RLIMIT_AS, 1); // no room for more stacks than the system keeps in reserve
        for (; accepted < 1000; ++accepted)
            pool.submit([held] { held->wait(); });
    };
    EXPECT_THROW(submitAll(), std::system_error);
    EXPECT_EQ(pool.threadCount(), accepted);
    end.set_value();
    pool.finish();
    EXPECT_EQ(held.use_count(), 1);
}
#endif

} // namespace
} // namespace quillorn
