#include "Platform/Calendar.h"
#include "Platform/Text.h"
#include "Support/StoreTest.h"
#include "Views/TaskGrouping.h"
#include "Views/TaskListTexts.h"
#include "Views/TaskMeeting.h"
#include "Views/TaskSorting.h"
#include "Views/TaskTextSearch.h"

#include <gmock/gmock.h>

namespace quillorn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct TaskListRuleTest : StoreTest<MemoryStore> {
    ProjectTask& task(std::string title, const char* due = "", TaskStatus status = TaskStatus::todo) {
        return make<ProjectTask>(context, {.title = std::move(title),
                                           .dueDate = *due != 0 ? std::optional(date(due)) : std::nullopt,
                                           .status = status});
    }
    std::vector<std::string> titles(const TaskFilter& filter, bool showCompleted = false) {
        context.save();
        return namesOf(context.fetch<ProjectTask>(taskQuery(filter, moment, showCompleted)));
    }
    /// "key: titles" of each section.
    std::vector<std::string> sections(GroupBy grouping) {
        context.save();
        std::vector<std::string> lines;
        for (const TaskSection& section : groupTasks(context.fetch<ProjectTask>(), grouping, moment, text)) {
            lines.push_back(section.head.title + ":");
            for (const ProjectTask* member : section.tasks)
                lines.back() += " " + member->title();
        }
        return lines;
    }

    Calendar calendar{"America/New_York", "en_US"};
    Text text{"en_US"};
    TaskMoment moment = TaskMoment::at(testNow, calendar); // Thursday 7:00, the day ends at 05:00Z
};

TEST_F(TaskListRuleTest, listsHoldWhatTheirRulesSay) {
    auto& site = make<Project>(context, {.name = "Site"});
    site.setClient(&make<Client>(context, {.name = "Acme"}));
    auto& home = make<Tag>(context, {.name = "home"});
    const Project& empty = make<Project>(context);

    task("working", "", TaskStatus::inProgress);
    task("worksNextYear", "2027-01-15T12:00:00Z", TaskStatus::inProgress);
    task("wasWorking", "", TaskStatus::inProgress).setCompleted(true, testNow);
    auto& tonight = task("tonight", "2026-01-16T04:59:00Z");
    task("midnight", "2026-01-16T05:00:00Z").setProject(&site);
    task("overdue", "2025-01-15T12:00:00Z").setTags({&home});
    task("weekAhead", "2026-01-22T12:00:00Z").setParentTask(&tonight);
    task("beyond", "2026-01-22T12:00:01Z");
    task("doneTomorrow", "2026-01-16T12:00:00Z").setCompleted(true, testNow);
    task("dateless");
    task("now", "2026-01-15T12:00:00Z").setParentTask(&tonight);

    using enum TaskFilter::Kind;
    EXPECT_THAT(titles({today}), ElementsAre("working", "worksNextYear", "tonight", "overdue", "now"));
    EXPECT_EQ(titles({today}, true), titles({today}));
    EXPECT_THAT(titles({upcoming}), ElementsAre("tonight", "midnight", "weekAhead"));
    EXPECT_THAT(titles({upcoming}, true), ElementsAre("tonight", "midnight", "weekAhead", "doneTomorrow"));
    EXPECT_THAT(titles({project, site.id()}), ElementsAre("midnight"));
    EXPECT_THAT(titles({client, site.client()->id()}), ElementsAre("midnight"));
    EXPECT_THAT(titles({tag, home.id()}), ElementsAre("overdue"));
    EXPECT_THAT(titles({project, empty.id()}), IsEmpty());
    EXPECT_EQ(titles({all}).size(), 9);
    EXPECT_EQ(titles({all}, true).size(), 11);
    EXPECT_EQ(context.fetch<ProjectTask>(todayCountQuery(moment)).size(), 4) << "subtasks don't count";
}

TEST_F(TaskListRuleTest, theDayIsThatOfTheZoneAndToday86400SecondsLong) {
    // Clocks go forward at 07:00Z: the day has 23 hours, and the limit lies an hour behind it.
    moment = TaskMoment::at(date("2026-03-08T12:00:00Z"), calendar);
    EXPECT_EQ(moment.startOfToday, date("2026-03-08T05:00:00Z"));
    EXPECT_EQ(moment.startOfTomorrow, date("2026-03-09T04:00:00Z"));
    EXPECT_EQ(moment.todayLimit, date("2026-03-09T05:00:00Z"));
    EXPECT_EQ(moment.endOfWeek, date("2026-03-15T04:00:00Z"));
    EXPECT_EQ(TaskMoment::at(testNow, Calendar("UTC", "de_DE")).endOfWeek, date("2026-01-19T00:00:00Z"));
}

TEST_F(TaskListRuleTest, sectionsStandInTheirOrderAndHaveTheirTasks) {
    auto& b = make<Project>(context, {.name = "b10"});
    auto& a = make<Project>(context, {.name = "b9"});
    auto &x = make<Tag>(context, {.name = "x"}), &y = make<Tag>(context, {.name = "y"});
    task("1", "2026-01-14T12:00:00Z", TaskStatus::review).setProject(&b);
    task("2", "2026-01-15T11:00:00Z").setTags({&y, &x});
    task("3", "2026-01-16T12:00:00Z").setProject(&a);
    task("4", "2026-01-17T12:00:00Z").setTags({&x});
    task("5", "2026-01-18T12:00:00Z").setPriority(TaskPriority::urgent);
    task("6").setProject(&b);
    EXPECT_THAT(sections(GroupBy::none), ElementsAre(": 1 2 3 4 5 6"));
    EXPECT_THAT(sections(GroupBy::status), ElementsAre("To Do: 2 3 4 5 6", "Review: 1"));
    EXPECT_THAT(sections(GroupBy::priority), ElementsAre("Medium: 1 2 3 4 6", "Urgent: 5"));
    EXPECT_THAT(sections(GroupBy::project), ElementsAre("b9: 3", "b10: 1 6", "No Project: 2 4 5"));
    EXPECT_THAT(sections(GroupBy::tag), ElementsAre("x: 2 4", "y: 2", "No Tags: 1 3 5 6"));
    EXPECT_THAT(sections(GroupBy::dueDate),
                ElementsAre("Overdue: 1", "Today: 2", "Tomorrow: 3", "This Week: 4", "Later: 5", "No Due Date: 6"));
    std::vector<std::string> keys;
    for (const auto grouping : groupings)
        keys.push_back(sectionsOf(named<ProjectTask>(context, "5"), grouping, moment).front().key);
    EXPECT_THAT(keys, ElementsAre("none", "todo", "urgent", "none", "later", "none"));
    EXPECT_EQ(sectionsOf(named<ProjectTask>(context, "3"), GroupBy::project, moment).front().key, a.id().string());
}

TEST_F(TaskListRuleTest, ordersPutEqualsAsTheyCame) {
    task("b", "2026-01-16T12:00:00Z").setPriority(TaskPriority::low);
    task("A10");
    task("a9", "2026-01-15T12:00:00Z").setPriority(TaskPriority::high);
    task("Ä");
    context.save();
    const auto sorted = [&](const char* raw) {
        const SortOrder order = sortOrderFromRaw(raw).value();
        auto tasks = context.fetch<ProjectTask>();
        sortTasks(tasks, order, text);
        auto slowly = context.fetch<ProjectTask>();
        std::ranges::stable_sort(slowly, [&](auto* a, auto* b) { return isBefore(*a, *b, order, text); });
        EXPECT_EQ(tasks, slowly);
        return namesOf(tasks);
    };
    EXPECT_THAT(sorted("Due Date"), ElementsAre("a9", "b", "A10", "Ä"));
    EXPECT_THAT(sorted("Priority"), ElementsAre("a9", "A10", "Ä", "b"));
    EXPECT_THAT(sorted("Title"), ElementsAre("Ä", "a9", "A10", "b"));
    EXPECT_THAT(sorted("Created"), ElementsAre("b", "A10", "a9", "Ä"));
    EXPECT_FALSE(sortOrderFromRaw("due date") || groupByFromRaw(""));
}

TEST_F(TaskListRuleTest, meetingsGatherTheTasksOfOneSource) {
    const auto from = [&](const char* title, const char* url, Date created) {
        auto& made = context.insert<ProjectTask>(ProjectTask::Arguments{}, created);
        made.setSourceTitle(title);
        made.setSourceURL(url);
        return &made;
    };
    using std::chrono::hours;
    const std::vector<ProjectTask*> tasks{from("Old name", "x://1", testNow),
                                          from("Weekly", "x://1", testNow + hours(2)),
                                          from("Weekly", "", testNow),
                                          from("Weekly", "x://2", testNow + hours(3)),
                                          from("Weekly", "", testNow - hours(1)),
                                          from("", "", testNow)};
    const auto meetings = meetingsOf(tasks);
    EXPECT_THAT(meetings, ElementsAre(TaskMeeting{"x://2", "Weekly", testNow + hours(3), 1},
                                      TaskMeeting{"x://1", "Weekly", testNow + hours(2), 2},
                                      TaskMeeting{"Weekly", "Weekly", testNow, 2}));
    EXPECT_EQ(meetingsMatching(meetings, "wEEk", text).size(), 3);
    EXPECT_THAT(meetingsMatching(meetings, "month", text), IsEmpty());
    EXPECT_EQ(meetingsMatching(meetings, " ", text), meetings);
}

TEST_F(TaskListRuleTest, searchLooksAtTitleDescriptionSourceAndTags) {
    auto& found = task("Straße fegen");
    found.setTaskDescription("am Montag");
    found.setSourceTitle("Weekly");
    found.setSourceURL("x://hidden");
    found.setTags({&make<Tag>(context, {.name = "Zuhause"})});
    const auto matches = [&](const char* typed) { return TaskTextSearch(typed, text).matches(found); };
    for (const char* typed : {"STRASSE", "MONTAG", "week", "zuhause", "", " \t"})
        EXPECT_TRUE(matches(typed)) << typed;
    for (const char* typed : {"hidden", "fegenam", " fegen "})
        EXPECT_FALSE(matches(typed)) << typed;
}

TEST_F(TaskListRuleTest, emptyListsSayWhy) {
    using enum TaskFilter::Kind;
    EXPECT_EQ(emptyTaskList({today}, "", {}).title, "Nothing Needs You Today");
    EXPECT_EQ(emptyTaskList({upcoming}, "", {}).title, "Nothing Due This Week");
    EXPECT_EQ(emptyTaskList({tag}, "home", {}).title, "No Tasks Tagged “home”");
    EXPECT_EQ(emptyTaskList({client}, "", {}).title, "No Open Tasks");
    EXPECT_EQ(emptyTaskList({all}, "", {.isSearching = true}).text, "Nothing matches your search.");
    EXPECT_EQ(emptyTaskList({all}, "", {.hasMeeting = true}).title, "No Tasks From This Meeting");
    EXPECT_EQ(doneToggleTitle(false, 3), "Show 3 done tasks");
    EXPECT_EQ(doneToggleTitle(true, 3), "Hide done tasks");
}

} // namespace
} // namespace quillorn
