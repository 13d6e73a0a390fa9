#include "ChildProcess.h"
#include "Store/StoreError.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <csignal>
#include <gmock/gmock.h>
#include <thread>

namespace quillorn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::chrono_literals;
using Intent = ModelContext::Intent;

void addTag(ModelContainer& container, const std::string& name) {
    ModelContext context(container);
    make<Tag>(context, {.name = name});
    context.save();
}

std::vector<std::string> tagsIn(ModelContainer& container) {
    ModelContext context(container);
    return namesOf(context.fetch<Tag>());
}

void addTask(ModelContainer& container) {
    ModelContext context(container);
    make<ProjectTask>(context);
    context.save();
}

std::int64_t sortOrderIn(ModelContainer& container) {
    ModelContext context(container);
    return context.fetch<ProjectTask>().at(0)->sortOrder();
}

std::uintmax_t logSize(const TestStore& store) {
    return std::filesystem::file_size(store.file().string() + "-wal");
}

TEST(Update, losesNothingBetweenThreads) {
    const auto run = [](ModelContainer& container) {
        addTask(container);
        const auto work = [&] {
            for (int i = 0; i < 500; ++i)
                increment(container);
        };
        std::thread other(work);
        work();
        other.join();
        EXPECT_EQ(sortOrderIn(container), 1000);
    };
    run(*TestStore().container);
    run(*MemoryStore().container);
}

TEST(Update, losesNothingBetweenContainersAndProcesses) {
    TestStore store;
    addTask(*store.container);
    const auto second = store.open();
    ChildProcess child(store.file());
    child.tell("increment 200");
    std::thread other([&] {
        for (int i = 0; i < 200; ++i)
            increment(*second);
    });
    for (int i = 0; i < 200; ++i)
        increment(*store.container);
    other.join();
    EXPECT_EQ(child.answer(), "ok");
    EXPECT_EQ(sortOrderIn(*store.container), 600);
    EXPECT_EQ(ForeignConnection(store.file()).text("PRAGMA integrity_check"), "ok");
}

TEST(Update, withoutAChangeLeavesNoTrace) {
    TestStore store;
    {
        ModelContext context(*store.container, Intent::update);
        make<Tag>(context); // forgotten, not saved
    }
    {
        ModelContext context(*store.container, Intent::update);
        context.save(); // nothing to write: gives up the lock all the same
        addTag(*store.container, "a");
        EXPECT_THAT(namesOf(context.fetch<Tag>()), ElementsAre("a"));
    }
    EXPECT_THAT(tagsIn(*store.container), ElementsAre("a"));
}

TEST(Processes, seeEachOthersCommitsAtOnce) {
    TestStore store;
    ChildProcess child(store.file());
    std::string all;
    for (int round = 0; round < 10; ++round) {
        const std::string number = std::to_string(round);
        all += (all.empty() ? "" : ",") + ("own" + number);
        addTag(*store.container, "own" + number);
        EXPECT_EQ(child.ask("names"), all);
        all += ",child" + number;
        EXPECT_EQ(child.ask("add child" + number), "ok");
        std::string seen;
        for (const std::string& name : tagsIn(*store.container))
            seen += (seen.empty() ? "" : ",") + name;
        EXPECT_EQ(seen, all);
    }
}

TEST(Snapshot, staysAsItWasAtTheFirstReadUpToASave) {
    TestStore store;
    const auto second = store.open();
    addTag(*store.container, "a");
    ModelContext context(*store.container);
    EXPECT_THAT(namesOf(context.fetch<Tag>()), ElementsAre("a"));
    addTag(*store.container, "b");
    addTag(*second, "c");
    EXPECT_THAT(namesOf(context.fetch<Tag>()), ElementsAre("a"));
    EXPECT_THAT(tagsIn(*store.container), ElementsAre("a", "b", "c"));
    make<Tag>(context, {.name = "d"});
    context.save();
    EXPECT_THAT(namesOf(context.fetch<Tag>()), ElementsAre("a", "b", "c", "d"));
    addTag(*second, "e");
    EXPECT_EQ(context.fetch<Tag>().size(), 4U);
    context.endReading();
    EXPECT_EQ(context.fetch<Tag>().size(), 5U);
}

TEST(Snapshot, neverShowsHalfASave) {
    TestStore store;
    addTask(*store.container);
    addTask(*store.container);
    std::atomic<bool> finished = false;
    std::thread writer([&] {
        for (int i = 1; i <= 200; ++i) {
            ModelContext context(*store.container);
            for (ProjectTask* task : context.fetch<ProjectTask>())
                task->setSortOrder(i);
            context.save();
        }
        finished = true;
    });
    while (!finished) {
        ModelContext context(*store.container);
        const auto first = context.find<ProjectTask>(context.fetch<ProjectTask>({.order = "key LIMIT 1"})[0]->id());
        EXPECT_EQ(first->sortOrder(), context.fetch<ProjectTask>()[1]->sortOrder());
    }
    writer.join();
}

TEST(EndReading, keepsWhatIsLoadedAndReadsOnWhenAsked) {
    TestStore store;
    {
        ModelContext context(*store.container);
        make<ProjectTask>(context, {.title = "t", .project = &make<Project>(context, {.name = "p"})});
        context.save();
    }
    ModelContext context(*store.container);
    auto& task = named<ProjectTask>(context, "t");
    context.endReading();
    const auto before = store.container->executedStatements();
    EXPECT_EQ(task.title(), "t");
    EXPECT_EQ(store.container->executedStatements(), before);
    EXPECT_EQ(task.project()->name(), "p");
    EXPECT_THAT(task.project()->tasks(), ElementsAre(&task));
}

TEST(WriteLock, ofAStoppedOrKilledProcessBlocksNobodyForEver) {
    TestStore store;
    addTag(*store.container, "a");
    ChildProcess child(store.file());
    EXPECT_EQ(child.ask("hold"), "held");
    WriteLock lock(store.file().string() + "-lock");
    EXPECT_THROW((void)lock.acquire(20ms), StoreError);
    child.signal(SIGSTOP);
    EXPECT_THROW((void)lock.acquire(20ms), StoreError);
    EXPECT_THAT(tagsIn(*store.container), ElementsAre("a")) << "readers don't wait";
    child.kill();
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

TEST(Log, isLeftAloneByConnectionsAndTruncatedByTheContainer) {
    TestStore store;
    const std::string before = readFile(store.file());
    for (int i = 0; i < 10; ++i)
        addTag(*store.container, "a");
    const auto size = logSize(store);
    EXPECT_GT(size, 0U);
    {
        ForeignConnection last(store.file());
        EXPECT_EQ(last.integer("SELECT count(*) FROM Tag"), 10);
        last.execute("UPDATE Tag SET name = 'b'");
    }
    EXPECT_GT(logSize(store), size);
    EXPECT_EQ(readFile(store.file()), before) << "everything is in the log";
    store.container.reset();
    EXPECT_EQ(logSize(store), 0U);
    const auto copy = store.folder / "copy.store";
    std::filesystem::copy_file(store.file(), copy);
    EXPECT_EQ(ForeignConnection(copy).integer("SELECT count(*) FROM Tag WHERE name = 'b'"), 10);
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
    addTag(*store.container, "a");
    ModelContext reader(*store.container);
    EXPECT_EQ(reader.fetch<Tag>().size(), 1U);
    auto second = store.open();
    addTag(*second, "b");
    const auto start = std::chrono::steady_clock::now();
    second.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - start, 4s) << "SQLite itself would wait for five";
    EXPECT_GT(logSize(store), 0U);
    EXPECT_THAT(tagsIn(*store.container), ElementsAre("a", "b"));
    reader.endReading();
    store.open().reset();
    EXPECT_EQ(logSize(store), 0U);
}

TEST(StoreInMemory, isSharedByItsContextsAndGoesWithItsContainer) {
    MemoryStore store;
    EXPECT_TRUE(store.container->isInMemory());
    addTag(*store.container, "a");
    std::thread([&] { addTag(*store.container, "b"); }).join();
    EXPECT_THAT(tagsIn(*store.container), ElementsAre("a", "b"));
    EXPECT_THAT(tagsIn(*store.open(std::nullopt)), IsEmpty()) << "another container, another store";
}

} // namespace
} // namespace quillorn
