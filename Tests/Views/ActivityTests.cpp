#include "Platform/Calendar.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"
#include "Views/ActivityDashboardHeader.h"
#include "Views/TodaySummaryView.h"

#include <fmt/core.h>
#include <gtest/gtest.h>

namespace quillorn {
namespace {

using namespace std::chrono_literals;

struct ActivityTest : testing::Test, MemoryStore {
    Calendar calendar{"UTC", "en_US"};
    ModelContext context{*container};
};

TEST_F(ActivityTest, tellsTheHistoryFromTheDatesOfRecords) {
    const auto minutes = [](int count) { return testNow + std::chrono::minutes{count}; };
    auto& acme = make<Client>(context, {.name = "Acme"});
    auto& site = make<Project>(context, {.name = "Site", .color = "#123456"});
    site.setClient(&acme);
    site.setUpdatedAt(minutes(1));
    auto& free = make<Project>(context, {.name = "Free"});
    free.setUpdatedAt(minutes(2));
    auto& done = make<ProjectTask>(context, {.title = "Offer", .project = &site});
    done.setCompleted(true, minutes(3));
    done.setUpdatedAt(minutes(3) + 999ms);
    auto& edited = make<ProjectTask>(context, {.title = "Texts", .project = &free});
    edited.setCompleted(true, minutes(4));
    edited.setUpdatedAt(minutes(4) + 1s);
    auto& lone = make<ProjectTask>(context, {.title = "Call"});
    lone.setUpdatedAt(minutes(5));
    make<TimeEntry>(context, {.task = &done, .startTime = minutes(6)}).setEndTime(minutes(6) + 65s);
    const std::vector<std::pair<std::string, ProjectTask*>> notes = {
        {"", &done}, {" Kick-off ", nullptr}, {"Untitled Note", nullptr}};
    int moment = 7;
    for (const auto& [title, task] : notes)
        make<Note>(context, {.title = title, .content = task != nullptr ? "Yes" : "", .task = task})
            .setUpdatedAt(minutes(moment++));

    const auto items = [&](std::optional<UUID> filter) {
        return activityItems(context.fetch<ProjectTask>(), context.fetch<TimeEntry>(), context.fetch<Note>(),
                             context.fetch<Project>(), context.fetch<Client>(), filter, testNow);
    };
    context.save();
    std::string lines;
    for (const ActivityItem& item : items({}))
        lines += fmt::format("{} {} {} {} {}\n", item.title, item.subtitle.value_or("-"), item.icon, item.iconColor,
                             nameOf(item.kind));
    EXPECT_EQ(lines, "Edited note - note.text yellow noteUpdated\n"
                     "Edited note: Kick-off - note.text yellow noteUpdated\n"
                     "Commented on Offer Acme / Site note.text yellow noteUpdated\n"
                     "Tracked 01:05: Offer Acme / Site timer orange timeEntry\n"
                     "Updated Call - pencil.circle.fill blue taskUpdated\n"
                     "Updated Texts Free pencil.circle.fill blue taskUpdated\n"
                     "Completed: Texts Free checkmark.circle.fill green taskCompleted\n"
                     "Completed: Offer Acme / Site checkmark.circle.fill green taskCompleted\n"
                     "Updated project: Free - folder.fill #007AFF projectUpdated\n"
                     "Updated project: Site Acme folder.fill #123456 projectUpdated\n"
                     "Updated client: Acme - building.2.fill teal clientUpdated\n");
    EXPECT_EQ(items(acme.id()).size(), 5u);
    EXPECT_TRUE(items(UUID()).empty());
    EXPECT_EQ(items({})[3].id, "time-" + context.fetch<TimeEntry>()[0]->id().string());
    const auto header = ActivityDashboardHeader::of(items({}), testNow, calendar);
    EXPECT_EQ(fmt::format("{} {} {}", header.today, header.line, header.byType[0].count), "11 11 total 4");
    EXPECT_EQ(header.lastSevenDays[6], (ActivityDashboardHeader::Bar{"Thu", 11}));
    EXPECT_EQ(header.byType.size(), 4u);
}

TEST_F(ActivityTest, countsStreaksAndGroupsDays) {
    const struct {
        int first, last, streak;
        std::string_view line;
    } streaks[] = {{0, 1, 2, "2 day streak"}, {1, 3, 3, "3 day streak"}, {0, 39, 30, "30 day streak"},
                   {2, 5, 0, "4 total"},      {0, 0, 1, "1 total"},      {0, -1, 0, "0 total"}};
    for (const auto& [first, last, streak, line] : streaks) {
        std::vector<ActivityItem> items;
        for (int day = first; day <= last; ++day)
            items.push_back({.id = "", .title = "", .timestamp = testNow - 24h * day});
        const auto header = ActivityDashboardHeader::of(items, testNow, calendar);
        EXPECT_EQ(header.streak, streak) << line;
        EXPECT_EQ(header.line, line);
        EXPECT_EQ(header.lineIcon, streak >= 2 ? "flame.fill" : "");
    }
    const std::pair<std::chrono::seconds, std::string_view> groups[] = {{0s, "Today"},
                                                                        {-12h, "Today"},
                                                                        {-12h - 1s, "Yesterday"},
                                                                        {-36h - 1s, "This Week"},
                                                                        {-7 * 24h, "This Week"},
                                                                        {-7 * 24h - 1s, "Earlier"},
                                                                        {36h, "This Week"}};
    for (const auto& [distance, label] : groups)
        EXPECT_EQ(labelOf(dateGroup(testNow + distance, testNow, calendar)), label) << distance.count();
}

TEST_F(ActivityTest, sumsUpADay) {
    EXPECT_EQ(summaryTiles({1, 1, 1, 0.0})[2], (SummaryTile{"Time Tracked", "0m", "1 entry"}));
    EXPECT_EQ(summaryTiles({2, 0, 2, 3900})[2], (SummaryTile{"Time Tracked", "1h 5m", "2 entries"}));
    EXPECT_EQ(summaryTiles({1, 0, 0, 0})[0], (SummaryTile{"Completed", "1", "task"}));
    auto& task = make<ProjectTask>(context, {.title = "Offer"});
    const auto row = [&](std::string title, std::string content) {
        auto& note = make<Note>(context, {.title = std::move(title), .content = std::move(content), .task = &task});
        const auto made = TodaySummaryView::rowOf(note, calendar);
        return made.title + "|" + made.subtitle;
    };
    EXPECT_EQ(row("", "First\nSecond"), "Comment on Offer|First");
    EXPECT_EQ(row("Minutes", "First\nSecond"), "Minutes|First Second");
}

} // namespace
} // namespace quillorn
