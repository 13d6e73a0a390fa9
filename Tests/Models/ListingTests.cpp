#include "Models/ClientSearch.h"
#include "Models/NoteSearch.h"
#include "Models/ProjectSearch.h"
#include "Models/ProjectTotals.h"
#include "Models/TaskSearch.h"
#include "Models/TaskTotals.h"
#include "Models/TimeEntrySearch.h"
#include "Platform/Text.h"
#include "Support/Dice.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <algorithm>
#include <gmock/gmock.h>

namespace quillorn {
namespace {

using namespace std::chrono_literals;

const std::array<const char*, 6> texts{"Straße 10", "STRASSE und Weg", "weg 9", "Café", "weg 9", ""};
const std::array<const char*, 5> needles{"strasse", "WEG", "cafe", "É", ""};

/// A store of everything, linked at random: entries and notes on tasks, on projects, on both, on neither; tasks in
/// chains, in which two circles are.
void populate(TestStore& store, Dice& dice, std::size_t projectCount, std::size_t taskCount) {
    ModelContext context(*store.container);
    std::vector<Client*> clients{nullptr};
    std::vector<Project*> projects{nullptr};
    std::vector<ProjectTask*> tasks{nullptr};
    std::vector<Tag*> tags;
    const auto words = [&] { return std::string(texts[dice.below(texts.size())]); };
    const auto someTime = [&] { return std::chrono::microseconds(dice.below(100'000'000)); };
    for (int i = 0; i < 6; ++i) {
        clients.push_back(&make<Client>(context, {.name = words()}));
        clients.back()->setArchived(i % 3 == 0);
        tags.push_back(&make<Tag>(context));
    }
    for (std::size_t i = 0; i < projectCount; ++i) {
        projects.push_back(&make<Project>(context, {.name = words()}));
        projects.back()->setArchived(dice.chance(30));
        projects.back()->setClient(dice.oneOf(clients));
    }
    for (std::size_t i = 0; i < taskCount; ++i) {
        auto& task = make<ProjectTask>(
            context, {.title = words(),
                      .dueDate = dice.chance(60) ? std::optional(testNow + dice.below(20) * 1h) : std::nullopt,
                      .priority = static_cast<TaskPriority>(dice.below(4)),
                      .status = static_cast<TaskStatus>(dice.below(4)),
                      .project = dice.oneOf(projects)});
        if (dice.chance(30))
            task.setCompleted(true, testNow);
        // Mostly under the task before, so that the chains grow deep.
        if (dice.chance(90))
            task.setParentTask(dice.chance(80) ? tasks.back() : dice.oneOf(tasks));
        task.setTags({dice.oneOf(tags), dice.oneOf(tags)});
        tasks.push_back(&task);
        auto& note = context.insert<Note>(
            Note::Arguments{.title = words(), .content = words(), .project = dice.oneOf(projects), .task = &task},
            testNow + dice.below(10) * 1h);
        note.setPinned(dice.chance(30));
        if (dice.chance(50))
            note.setTask(nullptr);
    }
    for (std::size_t i = 0; i < 3 * taskCount; ++i) {
        auto* task = dice.oneOf(tasks);
        auto* project = dice.oneOf(projects);
        if (task != nullptr && dice.chance(30))
            project = task->project();
        const std::chrono::microseconds age = dice.chance(50) ? someTime() : std::chrono::hours(dice.below(10));
        auto& entry = make<TimeEntry>(
            context, {.task = task, .project = dice.chance(60) ? project : nullptr, .startTime = testNow - age});
        if (dice.chance(80))
            entry.setEndTime(entry.startTime() + someTime());
    }
    make<Tag>(context); // of no task
    context.save();
    // No surface makes equal ids or circles, but nothing in the store forbids them.
    ForeignConnection(store.file()).execute(R"(
            UPDATE TimeEntry SET id = (SELECT id FROM TimeEntry o WHERE o.key = TimeEntry.key % 7 + 1)
                WHERE key % 3 = 0;
            UPDATE ProjectTask SET parentTask = CASE key WHEN 3 THEN 5 WHEN 4 THEN 3 WHEN 5 THEN 4 ELSE 9 END
                WHERE key IN (3, 4, 5, 9))");
}

std::int64_t completedOf(const List<ProjectTask>& tasks) {
    return std::count_if(tasks.begin(), tasks.end(), [](const ProjectTask* task) { return task->isCompleted(); });
}

template <class Entries>
double secondsOf(const Entries& entries, Date now) {
    double seconds = 0;
    for (const TimeEntry* entry : entries)
        seconds += entry->duration(now);
    return seconds;
}

TEST(ProjectTotals, agreeWithTheProjectsAndClientsThemselves) {
    const Date now = testNow + 1min;
    std::vector<std::uint64_t> costs;
    // On both sides of the limits at which statements change their form.
    for (const std::size_t count : {3U, 10U, 11U, 100U, 501U}) {
        SCOPED_TRACE(count);
        TestStore store;
        Dice dice(static_cast<unsigned>(count));
        populate(store, dice, count, 4 * count);
        ModelContext context(*store.container), listing(*store.container);
        const auto projects = context.fetch<Project>(), listed = listing.fetch<Project>();
        const auto clients = context.fetch<Client>(), listedClients = listing.fetch<Client>();
        const auto before = store.container->executedStatements();
        const ProjectTotalsTable totals(listing, listed, now);
        const ClientTotalsTable clientTotals(listing, listedClients, now);
        costs.push_back(store.container->executedStatements() - before);
        std::size_t repeated = 0;
        for (std::size_t i = 0; i < projects.size(); ++i) {
            const Project& project = *projects[i];
            const ProjectTotals alone = ProjectTotalsTable(listing, {listed[i]}, now).of(*listed[i]);
            for (const ProjectTotals& total : {totals.of(*listed[i]), alone}) {
                ASSERT_EQ(total.taskCount, static_cast<std::int64_t>(project.tasks().size())) << project.key();
                ASSERT_EQ(total.completedTaskCount, completedOf(project.tasks()));
                ASSERT_NEAR(total.totalTimeSpent, secondsOf(project.allTimeEntries(), now), 1e-5) << project.key();
            }
            repeated += project.directTimeEntries().size();
            for (const ProjectTask* task : project.tasks())
                repeated += task->timeEntries().size();
            repeated -= project.allTimeEntries().size();
        }
        EXPECT_GT(repeated, count) << "no entry would be counted twice";
        for (std::size_t i = 0; i < clients.size(); ++i) {
            const ClientTotals total = clientTotals.of(*listedClients[i]);
            ClientTotals expected;
            for (const Project* project : clients[i]->projects()) {
                ++expected.projectCount;
                expected.activeProjectCount += project->isArchived() ? 0 : 1;
                expected.totalTaskCount += static_cast<std::int64_t>(project->tasks().size());
                expected.activeTaskCount -= completedOf(project->tasks());
                expected.totalTimeSpent += secondsOf(project->allTimeEntries(), now);
            }
            EXPECT_EQ(total.projectCount, expected.projectCount);
            EXPECT_EQ(total.activeProjectCount, expected.activeProjectCount);
            EXPECT_EQ(total.totalTaskCount, expected.totalTaskCount);
            EXPECT_EQ(total.activeTaskCount, expected.totalTaskCount + expected.activeTaskCount);
            EXPECT_NEAR(total.totalTimeSpent, expected.totalTimeSpent, 1e-4);
        }
    }
    EXPECT_THAT(costs, testing::Each(costs[0]));
    EXPECT_LE(costs[0], 9U);
}

TEST(TaskTotals, agreeWithTheTasksThemselves) {
    const Date now = testNow + 1min;
    std::vector<std::uint64_t> costs;
    for (const std::size_t count : {20U, 499U, 500U, 501U, 1200U}) {
        SCOPED_TRACE(count);
        TestStore store;
        Dice dice(static_cast<unsigned>(count));
        populate(store, dice, 12, count);
        ModelContext context(*store.container), listing(*store.container);
        const auto tasks = context.fetch<ProjectTask>();
        const auto listed = listing.fetch<ProjectTask>();
        const auto tags = listing.fetch<Tag>();
        const auto before = store.container->executedStatements();
        const TaskTotalsTable totals(listing, listed, now);
        const TagCounts counts(listing, tags);
        costs.push_back(store.container->executedStatements() - before);
        std::size_t deepest = 0;
        for (std::size_t i = 0; i < tasks.size(); ++i) {
            const ProjectTask& task = *tasks[i];
            const TaskTotals total = totals.of(*listed[i]);
            ASSERT_NEAR(total.totalTimeSpent, secondsOf(task.timeEntries(), now), 1e-6) << task.key();
            ASSERT_EQ(total.subtaskCount, static_cast<std::int64_t>(task.subtaskCount())) << task.key();
            ASSERT_EQ(total.completedSubtaskCount, completedOf(task.subtasks()));
            ASSERT_EQ(total.depth, static_cast<std::int64_t>(task.depth())) << task.key();
            deepest = std::max(deepest, task.depth());
        }
        EXPECT_GT(deepest, 5U);
        for (const Tag* tag : tags)
            EXPECT_EQ(counts.of(*tag), static_cast<std::int64_t>(tag->tasks().size()));
        const TaskTotalsTable some(listing, {listed[7], listed[11]}, now);
        EXPECT_EQ(some.of(*listed[11]).depth, totals.of(*listed[11]).depth) << "ancestors need not be listed";
    }
    EXPECT_THAT(costs, testing::Each(costs[0]));
    EXPECT_LE(costs[0], 5U);
}

/// Searches at random, each against a loop over all objects: `search(dice)` makes one, `find` runs it, `matches` judges
/// an object, and `before` orders the result.
template <class Type, class Search, class Find, class Matches, class Before>
void compareWithLoop(ModelContext& context, Search&& search, Find&& find, Matches&& matches, Before&& before) {
    Dice dice(11);
    std::size_t found = 0;
    for (int round = 0; round < 300; ++round) {
        const auto wanted = search(dice);
        auto expected = context.fetch<Type>();
        std::erase_if(expected, [&](const Type* object) { return !matches(wanted, *object); });
        std::stable_sort(expected.begin(), expected.end(), before);
        found += expected.size();
        const auto statements = context.container().executedStatements();
        ASSERT_EQ(find(wanted), expected) << "round " << round;
        ASSERT_EQ(context.container().executedStatements() - statements, 1U);
    }
    EXPECT_GT(found, 200U);
}

class SearchTest : public ::testing::Test {
  protected:
    SearchTest() {
        Dice dice(7);
        populate(store, dice, 20, 300);
        context.emplace(*store.container);
        projects = context->fetch<Project>();
        tasks = context->fetch<ProjectTask>();
        clients = context->fetch<Client>();
        tags = context->fetch<Tag>();
    }

    static std::optional<std::string> anyNeedle(Dice& dice) {
        return dice.chance(40) ? std::optional<std::string>(needles[dice.below(needles.size())]) : std::nullopt;
    }
    static std::optional<bool> anyFlag(Dice& dice) {
        return dice.chance(40) ? std::optional(dice.chance(50)) : std::nullopt;
    }
    template <class Type>
    static std::optional<UUID> anyId(Dice& dice, const std::vector<Type*>& records) {
        return dice.chance(40) ? std::optional(dice.chance(90) ? dice.oneOf(records)->id() : UUID()) : std::nullopt;
    }
    bool contains(const std::string& haystack, const std::optional<std::string>& part) const {
        return !part || text.contains(haystack, *part);
    }
    template <class Record>
    bool byName(const Record* a, const Record* b) const {
        const int order = text.compare(a->name(), b->name());
        return order != 0 ? order < 0 : a->id() < b->id();
    }
    template <class Record>
    static bool isShown(const Record& record) {
        return (record.project() == nullptr || !record.project()->isHidden()) &&
               (record.task() == nullptr || !record.task()->isHidden());
    }
    template <class Record>
    static bool isOf(const std::optional<UUID>& id, const Record* record) {
        return !id || (record != nullptr && record->id() == *id);
    }

    TestStore store;
    Text text{"de_DE"};
    std::optional<ModelContext> context;
    std::vector<Project*> projects;
    std::vector<ProjectTask*> tasks;
    std::vector<Client*> clients;
    std::vector<Tag*> tags;
};

TEST_F(SearchTest, clients) {
    compareWithLoop<Client>(
        *context, [](Dice& dice) { return ClientSearch{dice.chance(50), anyNeedle(dice)}; },
        [&](const ClientSearch& search) { return findClients(*context, search, text); },
        [&](const ClientSearch& search, const Client& client) {
            return (search.includeArchived || !client.isArchived()) && contains(client.name(), search.name);
        },
        [&](const Client* a, const Client* b) { return byName(a, b); });
}

TEST_F(SearchTest, projects) {
    compareWithLoop<Project>(
        *context, [&](Dice& dice) { return ProjectSearch{dice.chance(50), anyNeedle(dice), anyId(dice, clients)}; },
        [&](const ProjectSearch& search) { return findProjects(*context, search, text); },
        [&](const ProjectSearch& search, const Project& project) {
            return (search.includeArchived || !project.isHidden()) && contains(project.name(), search.name) &&
                   isOf(search.clientId, project.client());
        },
        [&](const Project* a, const Project* b) { return byName(a, b); });
}

TEST_F(SearchTest, tasks) {
    const auto anyNumber = [](Dice& dice) {
        return dice.chance(40) ? std::optional(static_cast<std::int64_t>(dice.below(6)) - 1) : std::nullopt;
    };
    compareWithLoop<ProjectTask>(
        *context,
        [&](Dice& dice) {
            return TaskSearch{dice.chance(50), anyNeedle(dice), anyId(dice, projects), anyNumber(dice),
                              anyNumber(dice), anyFlag(dice),   anyId(dice, tags)};
        },
        [&](const TaskSearch& search) { return findTasks(*context, search, text); },
        [&](const TaskSearch& search, const ProjectTask& task) {
            const auto& own = task.tags();
            return (search.includeArchived || !task.isHidden()) && contains(task.title(), search.title) &&
                   isOf(search.projectId, task.project()) &&
                   (!search.status || static_cast<std::int64_t>(task.status()) == search.status) &&
                   (!search.priority || static_cast<std::int64_t>(task.priority()) == search.priority) &&
                   (!search.completed || task.isCompleted() == search.completed) &&
                   (!search.tagId ||
                    std::any_of(own.begin(), own.end(), [&](const Tag* tag) { return isOf(search.tagId, tag); }));
        },
        // An absent date is less than any other.
        [](const ProjectTask* a, const ProjectTask* b) { return a->dueDate() < b->dueDate(); });
}

TEST_F(SearchTest, timeEntries) {
    compareWithLoop<TimeEntry>(
        *context,
        [&](Dice& dice) {
            return TimeEntrySearch{dice.chance(50), anyId(dice, tasks), anyId(dice, projects), anyFlag(dice)};
        },
        [&](const TimeEntrySearch& search) { return findTimeEntries(*context, search); },
        [&](const TimeEntrySearch& search, const TimeEntry& entry) {
            const Project* ofTask = entry.task() != nullptr ? entry.task()->project() : nullptr;
            return (search.includeArchived || isShown(entry)) && isOf(search.taskId, entry.task()) &&
                   (isOf(search.projectId, entry.project()) || isOf(search.projectId, ofTask)) &&
                   (!search.running || entry.isRunning() == search.running);
        },
        [](const TimeEntry* a, const TimeEntry* b) { return a->startTime() > b->startTime(); });
}

TEST_F(SearchTest, notes) {
    compareWithLoop<Note>(
        *context,
        [&](Dice& dice) {
            return NoteSearch{dice.chance(50), anyNeedle(dice), anyId(dice, projects), anyFlag(dice), anyNeedle(dice)};
        },
        [&](const NoteSearch& search) { return findNotes(*context, search, text); },
        [&](const NoteSearch& search, const Note& note) {
            return (search.includeArchived || isShown(note)) && contains(note.title(), search.title) &&
                   isOf(search.projectId, note.project()) && (!search.pinned || note.isPinned() == search.pinned) &&
                   (contains(note.title(), search.titleOrContent) || contains(note.content(), search.titleOrContent));
        },
        [](const Note* a, const Note* b) { return a->updatedAt() > b->updatedAt(); });
}

} // namespace
} // namespace quillorn
