#include "API/ListCache.h"

#include "API/APITest.h"
#include "API/ListImage.h"
#include "Support/Dice.h"
#include "Support/ManualQueue.h"
#include "Support/TestRecords.h"
#include "Support/Threads.h"

namespace quillorn {
namespace {

using namespace std::chrono_literals;

class ListCacheTest : public APITest {
  protected:
    /// The list as it is made anew: no other request has that query.
    std::string anew(const std::string& target) const {
        static std::atomic<int> number{0};
        return get(fmt::format("{}{}anew={}", target, target.find('?') == std::string::npos ? '?' : '&', ++number))
            .body;
    }
    std::uint64_t statementsOf(const std::string& target) const {
        const auto before = store.container->executedStatements();
        get(target);
        return store.container->executedStatements() - before;
    }
};

TEST_F(ListCacheTest, whateverHappensAListIsAsIfMadeAnew) {
    start();
    const auto other = store.open(); // as of another process
    Dice dice(1);
    std::vector<std::string> tasks, entries;
    for (int i = 0; i < 12; ++i)
        tasks.push_back(addTask(object("\"title\": \"Task {}\"", i)));
    const auto anyOf = [&](const std::vector<std::string>& ids) { return ids[dice.below(ids.size())]; };
    const std::function<void()> steps[] = {
        [&] { clock.advance(std::chrono::seconds(dice.below(100))); },
        [&] { clock.advance(-std::chrono::seconds(dice.below(50))); },
        [&] { entries.push_back(add("time-entries", object("\"taskId\": \"{}\"", anyOf(tasks)))); },
        [&] { post("/api/time-entries/" + anyOf(entries) + "/stop"); },
        [&] {
            if (entries.size() > 1)
                call("DELETE", "/api/time-entries/" + std::exchange(entries[1], entries.back()));
            entries.resize(std::max<std::size_t>(1, entries.size() - 1));
        },
        [&] { put("/api/tasks/" + anyOf(tasks), object("\"status\": {}", dice.below(4))); },
        [&] {
            const Date due =
                std::chrono::floor<std::chrono::seconds>(clock.now()) + std::chrono::seconds(dice.below(90));
            put("/api/tasks/" + anyOf(tasks), object("\"dueDate\": \"{}\"", formatISO8601(due)));
        },
        [&] {
            change(*other, [&](ModelContext& context) {
                context.find<ProjectTask>(UUID::parse(anyOf(tasks)).value())->setTitle(std::to_string(dice.below(100)));
            });
        },
    };
    entries.push_back(add("time-entries", object("\"taskId\": \"{}\"", tasks[0])));
    for (int round = 0; round < 150; ++round) {
        steps[dice.below(std::size(steps))]();
        const std::string target = dice.chance(60)   ? "/api/tasks"
                                   : dice.chance(50) ? "/api/tasks?status=1"
                                                     : "/api/time-entries";
        for (std::size_t times = 1 + dice.below(3); times > 0; --times)
            ASSERT_EQ(get(target).body, anew(target)) << target << " in round " << round;
    }
}

TEST_F(ListCacheTest, askedForAgainItIsMadeOnceAndKeptUpToTheNextCommit) {
    start();
    addTask(R"({"title": "One"})");
    for (const std::string target : {"/api/tasks", "/api/tasks?status=0", "/api/time-entries", "/api/notes"}) {
        statementsOf(target);
        EXPECT_GT(statementsOf(target), 1U) << target;
        EXPECT_EQ(statementsOf(target), 1U) << target;
    }
    EXPECT_EQ(statementsOf("/api/tasks"), 1U);
    addTag("blue");
    EXPECT_GT(statementsOf("/api/tasks"), 1U);
}

TEST_F(ListCacheTest, whoHasWrittenReadsItAndEachAnswerIsOfOneMoment) {
    start();
    std::vector<std::string> tasks;
    for (int i = 0; i < 4; ++i)
        tasks.push_back(addTask(R"({"title": "T"})"));
    add("time-entries", object("\"taskId\": \"{}\"", tasks[3]));
    onThreads(6, [&](int number) {
        for (int round = 0; round < 60; ++round) {
            const auto title = fmt::format("by {} in {}", number, round);
            if (number < 2) { // each a task of its own
                put("/api/tasks/" + tasks[static_cast<std::size_t>(number)], object("\"title\": \"{}\"", title));
                EXPECT_NE(get("/api/tasks").body.find(title), std::string::npos);
            } else if (number == 2) { // two, of which one is timed, in one commit
                change(*store.container, [&](ModelContext& context) {
                    for (const std::string& id : {tasks[2], tasks[3]})
                        context.find<ProjectTask>(UUID::parse(id).value())->setTitle(title);
                });
            } else {
                const auto titles = get("/api/tasks").all("title");
                EXPECT_EQ(titles[2], titles[3]);
            }
        }
    });
}

TEST_F(ListCacheTest, keepsNothingOfLongRequests) {
    ListCache cache(*store.container, loop);
    const std::string longText(3000, 'x');
    for (const auto& [path, query] : {std::pair(longText, std::string()), {"/", longText}}) {
        HttpRequest request;
        request.path = path;
        request.queryParams = {{"title", query}};
        for (int i = 0; i < 3; ++i)
            EXPECT_FALSE(cache.visit(request, clock.now()).isRepeated);
    }
}

TEST_F(ListCacheTest, keepsWhatIsAskedForAgainAndFindsRoom) {
    ManualQueue queue(clock);
    ListCache cache(*store.container, queue);
    const Date now = clock.now();
    const auto visit = [&](const std::string& path, Date when) {
        HttpRequest request;
        request.path = path;
        return std::pair(request, cache.visit(request, when));
    };
    const auto isKept = [&](const std::string& path) { return visit(path, now).second.image != nullptr; };
    const auto keep = [&](const std::string& path, std::size_t size) {
        visit(path, now);
        const auto [request, second] = visit(path, now);
        cache.keep(
            request, second,
            std::make_shared<ListImage>(ListImage{.text = std::string(size, 'x'), .from = now, .until = now + 1s}));
    };
    EXPECT_FALSE(visit("/small", now).second.isRepeated);
    keep("/small", 10);
    keep("/large", 20 << 20);
    EXPECT_TRUE(isKept("/large") && isKept("/small"));
    EXPECT_FALSE(visit("/small", now - 1us).second.image);
    EXPECT_TRUE(visit("/small", now + 1s).second.image);
    EXPECT_FALSE(visit("/small", now + 1s + 1us).second.image);

    keep("/larger", 40 << 20); // beyond all room: it alone
    EXPECT_TRUE(isKept("/larger"));
    EXPECT_FALSE(isKept("/large") || isKept("/small"));

    keep("/small", 10);
    queue.advance(30s);
    EXPECT_TRUE(isKept("/small"));
    queue.advance(30s);
    EXPECT_FALSE(isKept("/larger"));

    const auto [request, before] = visit("/late", now);
    change(*store.container, [](ModelContext& context) { make<Tag>(context); });
    EXPECT_FALSE(cache.isCurrent(before));
    visit("/late", now);
    cache.keep(request, before, std::make_shared<ListImage>());
    EXPECT_FALSE(isKept("/late"));
    cache.keep(request, visit("/late", now).second, nullptr); // one that is too long: no more tries
    EXPECT_FALSE(visit("/late", now).second.isRepeated);
}

} // namespace
} // namespace quillorn
