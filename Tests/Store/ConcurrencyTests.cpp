#include "Store/ReplaceContents.h"
#include "Store/StoreError.h"
#include "StoreWorker.h"
#include "Support/StoreTest.h"
#include "Support/Threads.h"

#include <array>
#include <csignal>
#include <fmt/core.h>
#include <fstream>
#include <future>
#include <gmock/gmock.h>
#include <set>
#include <thread>

namespace quillorn {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::chrono_literals;
using Intent = ModelContext::Intent;

void addTag(ModelContainer& container, const std::string& name) {
    change(container, [&](ModelContext& context) { make<Tag>(context, {.name = name}); });
}

std::vector<std::string> tagsIn(ModelContainer& container) {
    ModelContext context(container);
    return namesOf(context.fetch<Tag>());
}

void addTask(ModelContext& context) {
    make<ProjectTask>(context);
}

std::uintmax_t logSize(const TestStore& store) {
    return std::filesystem::file_size(store.file().string() + "-wal");
}

TEST(Update, losesNothingBetweenThreadsContainersAndProcesses) {
    MemoryStore memory;
    TestStore store;
    const auto second = store.open();
    change(*memory.container, addTask);
    change(*store.container, addTask);
    StoreWorker worker(store.file());
    worker.tell("increment 200");
    ModelContainer* const containers[] = {memory.container.get(), store.container.get(), second.get()};
    onThreads(6, [&](int number) { increment(*containers[number % 3], 200); });
    EXPECT_EQ(worker.answer(), "ok");
    const auto sortOrderIn = [](ModelContainer& container) {
        ModelContext context(container);
        return context.fetch<ProjectTask>().at(0)->sortOrder();
    };
    EXPECT_EQ(sortOrderIn(*memory.container), 400);
    EXPECT_EQ(sortOrderIn(*store.container), 1000);
    EXPECT_EQ(ForeignConnection(store.file()).text("PRAGMA integrity_check"), "ok");
}

TEST(Update, withoutAChangeLeavesNoTrace) {
    TestStore store;
    make<Tag>(*std::make_unique<ModelContext>(*store.container, Intent::update)); // forgotten, not saved
    ModelContext context(*store.container, Intent::update);
    context.save(); // nothing to write: gives up the lock all the same
    addTag(*store.container, "a");
    EXPECT_THAT(namesOf(context.fetch<Tag>()), ElementsAre("a"));
}

TEST(Snapshot, staysAsItWasAtTheFirstReadUpToASave) {
    TestStore store;
    const auto second = store.open();
    addTag(*store.container, "a");
    ModelContext context(*store.container);
    EXPECT_EQ(context.fetch<Tag>().size(), 1U);
    addTag(*store.container, "b");
    addTag(*second, "c");
    EXPECT_EQ(context.fetch<Tag>().size(), 1U);
    EXPECT_THAT(tagsIn(*store.container), ElementsAre("a", "b", "c"));
    make<Tag>(context, {.name = "d"});
    context.save();
    EXPECT_THAT(namesOf(context.fetch<Tag>()), ElementsAre("a", "b", "c", "d"));
    addTag(*second, "e");
    EXPECT_EQ(context.fetch<Tag>().size(), 4U);
    context.endReading();
    EXPECT_EQ(context.fetch<Tag>().size(), 5U);
}

TEST(WriteLock, ofAStoppedOrKilledProcessBlocksNobodyForEver) {
    TestStore store;
    addTag(*store.container, "a");
    StoreWorker worker(store.file());
    EXPECT_EQ(worker.ask("hold"), "held");
    WriteLock lock(store.file().string() + "-lock");
    EXPECT_THROW((void)lock.acquire(20ms), StoreError);
    worker.signal(SIGSTOP);
    EXPECT_THROW((void)lock.acquire(20ms), StoreError);
    EXPECT_THAT(tagsIn(*store.container), ElementsAre("a")) << "readers don't wait";
    worker.signal(SIGKILL);
    worker.wait();
    addTag(*store.container, "b");
    EXPECT_THAT(tagsIn(*store.container), ElementsAre("a", "b")) << "nothing of what the dead one had begun";
}

TEST(WriteLock, excludesThreadsOfOneContainer) {
    TemporaryFolder folder;
    for (const auto& file : {std::optional(folder / "lock"), std::optional<std::filesystem::path>()}) {
        WriteLock lock(file);
        {
            const auto guard = lock.acquire();
            std::thread([&] { EXPECT_THROW((void)lock.acquire(20ms), StoreError); }).join();
        }
        std::thread([&] { EXPECT_NO_THROW((void)lock.acquire(20ms)); }).join();
    }
}

TEST(WriteLock, isHadInTheOrderOfComing) {
    TemporaryFolder folder;
    for (const auto& file : {std::optional(folder / "lock"), std::optional<std::filesystem::path>()}) {
        WriteLock lock(file);
        std::vector<int> order;
        std::vector<std::thread> threads;
        std::optional guard(lock.acquire());
        for (int number = 0; number < 5; ++number) {
            threads.emplace_back([&, number] {
                try {
                    const auto mine = lock.acquire(number == 2 ? 1ms : WriteLock::usualPatience);
                    order.push_back(number);
                } catch (const StoreBusyError&) {
                    EXPECT_EQ(number, 2);
                }
            });
            if (number == 2)
                threads.back().join(); // has given up
            while (lock.waiting() != std::array<std::size_t, 5>{1, 2, 2, 3, 4}.at(static_cast<std::size_t>(number)))
                std::this_thread::yield();
        }
        guard.reset();
        guard.emplace(lock.acquire()); // comes last, though it let go a moment ago
        order.push_back(9);
        guard.reset();
        for (std::thread& thread : threads)
            if (thread.joinable())
                thread.join();
        EXPECT_THAT(order, ElementsAre(0, 1, 3, 4, 9));
    }
}

TEST(WriteLock, isTheSameFileForAllWhoCome) {
    TestStore store;
    const fs::path link = store.folder / "link.store", lock = store.file().string() + "-lock";
    fs::create_symlink(store.file(), link);
    const auto linked = store.StoreSurroundings::open(link);
    EXPECT_FALSE(fs::exists(link.string() + "-lock"));
    for (const bool isReplaced : {false, true}) {
        fs::remove(lock);
        if (isReplaced)
            std::ofstream(lock).put('x');
        const ModelContext writer(*linked, Intent::update);
        EXPECT_THROW((void)WriteLock(lock).acquire(0ms), StoreBusyError);
    }
}

TEST(WriteLock, isWaitedForAsLongAsTheSaverWants) {
    TestStore store;
    ModelContext context(*store.container);
    make<Tag>(context, {.name = "kept"});
    {
        const auto second = store.open();
        const ModelContext writer(*second, Intent::update);
        EXPECT_THROW(context.save(0ms), StoreBusyError);
    }
    { // a program that doesn't know the lock
        ForeignConnection other(store.file());
        other.execute("BEGIN IMMEDIATE");
        EXPECT_THROW(context.save(0ms), StoreBusyError);
    }
    context.save(0ms);
    EXPECT_THAT(tagsIn(*store.container), ElementsAre("kept"));
}

TEST(Files, thatWereRemovedOrReplacedTakeNoWrites) {
    for (const std::string file : {"Quillorn.store", "Quillorn.store-wal", "Quillorn.store-shm", ""})
        for (const bool isReplaced : {false, true}) {
            TestStore store;
            int losses = 0;
            const auto container =
                openContainer({.name = "", .url = store.file(), .cloudContainerIdentifier = {}},
                              {store.random, store.notifications, [&](const StoreLostError&) { ++losses; }}, store.log);
            addTag(*container, "a");
            ModelContext reader(*container);
            make<Tag>(reader);
            const fs::path path = file.empty() ? store.folder.path() : store.folder / file;
            const fs::path moved = path.string() + ".moved";
            fs::rename(path, moved);
            if (isReplaced)
                fs::copy(moved, path);
            EXPECT_THROW(ModelContext(*container, Intent::update), StoreLostError) << file;
            EXPECT_THROW(reader.save(), StoreLostError) << file;
            EXPECT_THROW(replaceStoreContents(*store.container, *container), StoreLostError) << file;
            EXPECT_EQ(losses, 3);
            if (file == "Quillorn.store") {
                std::ofstream(path).close();
                ModelContext second(*container);
                EXPECT_THROW(second.fetch<Tag>(), StoreLostError);
                EXPECT_TRUE(fs::exists(path.string() + "-wal")) << "SQLite removes the log of an empty file";
            }
            fs::remove_all(moved);
        }
}

TEST(Log, isCheckpointedUnderTheLockAlone) {
    TestStore store;
    addTag(*store.container, "a");
    WriteLock lock(store.file().string() + "-lock");
    std::optional guard(lock.acquire());
    const auto closed = std::async(std::launch::async, [&] { store.container.reset(); });
    EXPECT_EQ(closed.wait_for(50ms), std::future_status::timeout);
    EXPECT_GT(logSize(store), 0U);
    guard.reset();
    closed.wait();
    EXPECT_EQ(logSize(store), 0U);
}

TEST(Log, losesNoCommitToTheCheckpointsOfOthers) {
    constexpr int times = 60;
    TestStore store;
    std::vector<std::unique_ptr<StoreWorker>> workers;
    for (const char* name : {"p0", "p1"}) {
        workers.push_back(std::make_unique<StoreWorker>(store.file()));
        workers.back()->tell(fmt::format("churn {} {}", name, times));
    }
    onThreads(3, [&](int number) { churn(store.file(), fmt::format("t{}", number), times); });
    for (const auto& worker : workers)
        EXPECT_EQ(worker->answer(), "ok");
    std::set<std::string> expected;
    for (const char* name : {"p0", "p1", "t0", "t1", "t2"})
        for (int i = 0; i < times; ++i)
            expected.insert(fmt::format("{}.{}", name, i));
    const auto found = tagsIn(*store.container);
    EXPECT_EQ(found.size(), expected.size());
    EXPECT_TRUE(std::set(found.begin(), found.end()) == expected);
    EXPECT_EQ(ForeignConnection(store.file()).text("PRAGMA integrity_check"), "ok");
}

TEST(Log, staysShortWhileNobodyReads) {
    TestStore store;
    ModelContext context(*store.container);
    auto& tag = make<Tag>(context);
    std::uintmax_t longest = 0;
    for (int i = 0; i < 40; ++i) {
        tag.setName(std::string(400'000, static_cast<char>('a' + i % 2)));
        context.save();
        longest = std::max(longest, logSize(store));
    }
    EXPECT_LT(longest, 6'000'000U); // of the 16 million written
}

TEST(Log, isNotWaitedForWhenSomebodyReads) {
    TestStore store;
    ModelContext reader(*store.container);
    EXPECT_THAT(reader.fetch<Tag>(), IsEmpty());
    auto second = store.open();
    addTag(*second, "a");
    const auto start = std::chrono::steady_clock::now();
    second.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - start, 4s) << "SQLite itself would wait for five";
    EXPECT_GT(logSize(store), 0U);
    reader.endReading();
    store.open().reset();
    EXPECT_EQ(logSize(store), 0U);
}

} // namespace
} // namespace quillorn
