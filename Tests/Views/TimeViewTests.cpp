#include "Platform/Calendar.h"
#include "Platform/Text.h"
#include "Services/TimerService.h"
#include "Store/MainContext.h"
#include "Support/Dice.h"
#include "Support/FakeClock.h"
#include "Support/ManualQueue.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"
#include "Views/ActivityLogView.h"
#include "Views/LoggedTime.h"
#include "Views/TimeDashboard.h"
#include "Views/TimeEntryFormSheet.h"
#include "Views/TimeReport.h"
#include "Views/TimeReportTexts.h"
#include "Views/TodaySummaryView.h"

#include <fmt/core.h>
#include <fmt/ranges.h>
#include <gtest/gtest.h>

namespace quillorn {
namespace {

using std::chrono::local_days;
using namespace std::chrono_literals;

struct TimeViewTest : testing::Test, MemoryStore {
    /// An entry from `start` to `end`, which may be empty for one that runs.
    TimeEntry& track(std::string_view start, std::string_view end, ProjectTask* task = nullptr,
                     Project* project = nullptr) {
        auto& entry = make<TimeEntry>(
            main.context(), {.task = task, .project = project, .startTime = date(start), .title = std::string(start)});
        if (!end.empty())
            entry.setEndTime(date(end));
        return entry;
    }
    void save() {
        main.save();
        queue.runPosted();
    }

    FakeClock clock;
    ManualQueue queue{clock};
    Calendar calendar{"UTC", "en_US"};
    Text text{"en_US"};
    MainContext main{*container, queue, log};
    TimerService timer{queue, clock};
};

TEST_F(TimeViewTest, saysHowLongAnEntryWas) {
    const Calendar berlin("Europe/Berlin", "en_US");
    const struct {
        std::string_view start, end, line;
    } cases[] = {
        {"2026-01-15T23:30:00+01:00", "2026-01-15T00:15:00+01:00", "0:45 · ends next day"},
        {"2026-01-15T09:00:00+01:00", "2026-01-15T09:00:00+01:00", "end must differ from start"},
        {"2026-01-15T09:00:00+01:00", "2026-01-15T20:05:59+01:00", "11:05"},
        // The night has 23 hours.
        {"2026-03-28T22:00:00+01:00", "2026-03-28T06:00:00+01:00", "7:00 · ends next day"},
    };
    for (const auto& [start, end, line] : cases)
        EXPECT_EQ(durationLine(date(start), effectiveEnd(date(start), date(end), berlin), berlin).text, line) << start;
    EXPECT_EQ(fmt::format("{} {} {}", quickLabel(45), quickLabel(60), quickLabel(120)), "45m 1h 2h");
}

TEST_F(TimeViewTest, readsWhenSomebodyWorked) {
    const std::pair<std::string_view, std::string_view> cases[] = {
        {"45m", "2026-01-15T11:15:00Z 2026-01-15T12:00:00Z"},
        {"1h30m", "2026-01-15T10:30:00Z 2026-01-15T12:00:00Z"},
        {"1:30", "2026-01-15T10:30:00Z 2026-01-15T12:00:00Z"},
        {"1.5h", "2026-01-15T10:30:00Z 2026-01-15T12:00:00Z"},
        {"24h", "2026-01-14T12:00:00Z 2026-01-15T12:00:00Z"},
        {"9-10:30", "2026-01-15T09:00:00Z 2026-01-15T10:30:00Z"},
        {"11pm–1am", "2026-01-15T23:00:00Z 2026-01-16T01:00:00Z"},
        {"24h1m", "more than 24 hours can't be logged at once"},
        {"0m", "end must differ from start"},
        {"9:61-10:00", "\"9:61\" is no time of day"},
    };
    const auto read = [&](std::string_view typed, std::optional<local_days> day) {
        try {
            const LoggedTime time = readLoggedTime(typed, day, testNow, calendar);
            return formatISO8601(time.start) + " " + formatISO8601(time.end);
        } catch (const std::runtime_error& error) {
            return std::string(error.what());
        }
    };
    for (const auto& [typed, outcome] : cases)
        EXPECT_EQ(read(typed, {}), outcome) << typed;
    for (const char* typed : {"", "45", "1:5", "h", "1.h", "-", "45m x", "99999999999h"})
        EXPECT_THROW(readLoggedTime(typed, {}, testNow, calendar), std::runtime_error) << typed;
    EXPECT_EQ(read("45m", local_days(2026y / 1 / 10)), "2026-01-10T11:15:00Z 2026-01-10T12:00:00Z");
}

TEST_F(TimeViewTest, addsUpByDayWeekAndMonth) {
    EXPECT_EQ(timeFigures(TimeEntryStats(calendar), testNow)[3], (TimeFigure{"This Month", "0h 0m"}));
    // Thursday; the week began on Sunday the 11th.
    for (const auto& [start, end] :
         std::vector<std::pair<std::string_view, std::string_view>>{{"2026-01-15T11:00:00Z", ""},
                                                                    {"2026-01-14T23:00:00Z", "2026-01-15T01:00:00Z"},
                                                                    {"2026-01-11T00:00:00Z", "2026-01-11T00:10:00Z"},
                                                                    {"2026-01-10T23:59:00Z", "2026-01-11T00:00:00Z"},
                                                                    {"2026-01-01T00:00:00Z", "2026-01-01T00:20:00Z"},
                                                                    {"2025-12-01T00:00:00Z", "2025-12-01T04:00:00Z"},
                                                                    {"2025-11-30T00:00:00Z", "2025-11-30T08:00:00Z"}})
        track(start, end);
    save();
    TimeDashboard view(main, clock, calendar);
    const auto line = [&] {
        std::string words;
        for (const TimeFigure& figure : view.figures())
            words += fmt::format("{} {} {}|", figure.label, figure.value, figure.detail);
        return words;
    };
    EXPECT_EQ(line(), "Total Tracked 15h 31m 7 entries|Today 1h 0m |This Week 3h 10m |This Month 3h 31m |Last Month "
                      "4h 0m |");
    EXPECT_EQ(view.recent()[0].title, "Thursday");
    EXPECT_EQ(view.recent()[1].times, "Recording...");
    EXPECT_EQ(view.lastSevenDays()[6], (TimeDashboard::Bar{"Thu", "1h 0m", 3600}));
    queue.advance(1min);
    view.update();
    EXPECT_EQ(view.recent()[1].duration, "1:01:00");
    EXPECT_TRUE(line().starts_with("Total Tracked 15h 32m 7 entries|Today 1h 1m |"));
    view.remove(view.recent()[1].entry);
    queue.runPosted();
    EXPECT_TRUE(line().starts_with("Total Tracked 14h 31m 6 entries|Today 0h 0m |"));
}

/// All that the views say, for comparing those that have followed with new ones.
std::string words(TimeDashboard& view) {
    std::string all;
    for (const TimeFigure& figure : view.figures())
        all += figure.value + figure.detail + ' ';
    for (const auto* rows : {&view.byProject(), &view.byTask()})
        for (const auto& row : *rows)
            all += fmt::format("\n{} {} {} {:.3f}", row.id.string(), row.name, row.value, row.part);
    for (const auto& row : view.recent().rows())
        all += "\n" + row.id + row.title + row.subtitle + row.times + row.duration;
    return all;
}
std::string words(ActivityLogView& view) {
    std::string all = fmt::format("{} {} {}", view.header().today, view.header().line, view.header().total);
    for (const auto& row : view.rows().rows())
        all += fmt::format("\n{} {} {} {}", row.id, row.title, row.subtitle, row.time);
    return all;
}
std::string words(TodaySummaryView& view) {
    std::string all;
    for (const SummaryTile& tile : view.tiles())
        all += tile.value + tile.detail + ' ';
    for (const auto& row : view.completed().rows())
        all += "\n" + row.title + row.subtitle;
    for (const auto& row : view.notes().rows())
        all += "\n" + row.title + row.subtitle;
    return all;
}

TEST_F(TimeViewTest, whatHasFollowedSaysWhatIsReadAnew) {
    Dice dice(11);
    ModelContext& context = main.context();
    auto& client = make<Client>(context, {.name = "Acme"});
    auto& site = make<Project>(context, {.name = "Site"});
    site.setClient(&client);
    auto& offer = make<ProjectTask>(context, {.title = "Offer", .project = &site});
    save();
    const UUID acmeId = client.id(), siteId = site.id(), offerId = offer.id(); // the objects don't stay
    const auto acme = [&] { return dice.chance(50) ? context.find<Client>(acmeId) : nullptr; };
    const auto dashboards = [&] {
        std::vector<std::unique_ptr<TimeDashboard>> views;
        using Kind = TimeScope::Kind;
        for (const TimeScope& scope : {TimeScope{}, TimeScope{Kind::client, acmeId}, TimeScope{Kind::project, siteId},
                                       TimeScope{Kind::task, offerId}})
            views.push_back(std::make_unique<TimeDashboard>(main, clock, calendar, scope));
        return views;
    };
    const auto logs = [&] {
        std::vector<std::unique_ptr<ActivityLogView>> views;
        for (const std::string& filter : {std::string(), acmeId.string(), std::string(36, '0')})
            views.push_back(std::make_unique<ActivityLogView>(main, clock, calendar, text, filter));
        return views;
    };
    const auto timeViews = dashboards();
    const auto logViews = logs();
    TodaySummaryView today(main, clock, calendar);
    const auto any = [&]<class Type>(Type*) -> Type* {
        const auto all = context.fetch<Type>();
        return all.empty() || dice.chance(10) ? nullptr : all[dice.below(all.size())];
    };
    const auto step = [&] {
        auto* task = any(static_cast<ProjectTask*>(nullptr));
        auto* project = any(static_cast<Project*>(nullptr));
        auto* entry = any(static_cast<TimeEntry*>(nullptr));
        const Date moment = clock.now() - std::chrono::hours{dice.below(300)};
        const std::string name = std::to_string(dice.below(1000));
        switch (dice.below(12)) {
        case 0:
            make<Project>(context, {.name = name}).setClient(acme());
            return;
        case 1:
            make<ProjectTask>(context, {.title = name, .project = project});
            return;
        case 2:
            make<Note>(context, {.title = "", .content = name, .project = project, .task = task});
            return;
        case 3:
            if (project != nullptr && project->id() != siteId && dice.chance(20))
                context.remove(*project);
            return;
        case 4:
            if (project != nullptr)
                dice.chance(50) ? project->setName(name) : project->setClient(acme());
            return;
        case 5:
            if (task != nullptr)
                task->setProject(project), task->setUpdatedAt(clock.now());
            return;
        case 6:
            if (task != nullptr)
                task->setCompleted(dice.chance(70), clock.now());
            return;
        case 7:
            if (entry != nullptr)
                dice.chance(50) ? entry->setTask(task) : entry->setStartTime(moment);
            return;
        case 8:
            if (entry != nullptr)
                dice.chance(30) ? context.remove(*entry) : entry->setEndTime(entry->startTime() + 25min);
            return;
        default:
            make<TimeEntry>(context,
                            {.task = task, .project = dice.chance(30) ? project : nullptr, .startTime = moment})
                .setEndTime(dice.chance(90) ? std::optional(moment + 40min) : std::nullopt);
        }
    };
    for (int round = 0; round < 50; ++round) {
        SCOPED_TRACE(round);
        for (std::size_t left = dice.chance(4) ? 80 : 1 + dice.below(3); left > 0; --left)
            step();
        save();
        if (dice.chance(20)) {
            queue.advance(std::chrono::minutes{dice.below(600)});
            for (const auto& view : timeViews)
                view->update();
            for (const auto& view : logViews)
                view->update();
            today.update();
        }
        const auto anew = dashboards();
        for (std::size_t place = 0; place < anew.size(); ++place)
            ASSERT_EQ(words(*timeViews[place]), words(*anew[place])) << place;
        const auto logsAnew = logs();
        for (std::size_t place = 0; place < logsAnew.size(); ++place)
            ASSERT_EQ(words(*logViews[place]), words(*logsAnew[place])) << place;
        TodaySummaryView todayAnew(main, clock, calendar);
        ASSERT_EQ(words(today), words(todayAnew));
    }
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(TimeViewTest, reportsByWhatIsAsked) {
    ModelContext& context = main.context();
    auto& client = make<Client>(context, {.name = "Acme"});
    auto& site = make<Project>(context, {.name = "Site"});
    site.setClient(&client);
    site.setArchived(true);
    auto& offer = make<ProjectTask>(context, {.title = "Offer", .project = &site});
    offer.setTags({&make<Tag>(context, {.name = "urgent"}), &make<Tag>(context, {.name = "blue"})});
    track("2026-01-04T23:30:00Z", "2026-01-05T00:30:00Z", &offer); // a Sunday
    track("2026-01-05T10:00:00Z", "2026-01-05T10:15:00Z", &offer);
    track("2026-01-05T11:00:00Z", "2026-01-05T11:00:01Z", nullptr, &site);
    track("2026-01-15T11:59:00Z", ""); // runs
    track("2026-01-16T00:00:00Z", "2026-01-16T01:00:00Z");
    save();
    using By = TimeReportGrouping;
    const struct {
        TimeReportGrouping by;
        int rounding;
        std::string_view rows;
    } cases[] = {
        {By::day, 0, "2026-01-04 3600 1|2026-01-05 901 2|2026-01-15 60 1|=4561"},
        {By::week, 15, "Week of 2025-12-29 3600 1|Week of 2026-01-05 1800 2|Week of 2026-01-12 900 1|=6300"},
        {By::project, 0, "Site 4501 3|No Project 60 1|=4561"},
        {By::task, 1, "Offer 4500 2|Site (General) 60 1|Unassigned 60 1|=4620"},
        {By::client, 0, "Acme 4501 3|No Client 60 1|=4561"},
        {By::tag, 0, "blue 4500 2|urgent 4500 2|No Tag 61 2|=4561"},
    };
    for (const auto& [by, rounding, rows] : cases) {
        const TimeReportRequest request{local_days(2026y / 1 / 1),     local_days(2026y / 1 / 15), {}, {}, by,
                                        std::chrono::minutes{rounding}};
        const TimeReport report =
            timeReport(reportedTimes(context, request, calendar), request, clock.now(), calendar, text);
        std::string line;
        for (const auto& row : report.rows)
            line += fmt::format("{} {} {}|", row.title, row.seconds, row.entries);
        EXPECT_EQ(line + fmt::format("={}", report.totalSeconds), rows);
    }
    EXPECT_EQ(reportCSV({.rows = {{"k", "=1+1, \"so\"", 5400, 2}, {"k", "-x", 0.6, 1}}}),
              "title,entries,seconds,hours\r\n\"'=1+1, \"\"so\"\"\",2,5400,1.50\r\n'-x,1,1,0.00\r\n");
    const TimeReportRequest ofClient{local_days(2026y / 1 / 5), local_days(2026y / 1 / 15), client.id()};
    EXPECT_EQ(reportedTimes(context, ofClient, calendar).size(), 2u);
}

TEST_F(TimeViewTest, theFormKeepsWhatWasEntered) {
    ModelContext& context = main.context();
    auto& site = make<Project>(context, {.name = "Site"});
    auto& offer = make<ProjectTask>(context, {.title = "Offer", .project = &site});
    for (const auto* start : {"2026-01-15T08:00:00Z", "2026-01-15T08:30:00Z", "2026-01-15T08:45:00Z"})
        track(start, "2026-01-15T09:00:00Z");
    save();
    const TimeEntryFormSheet::Environment environment{main, timer, clock, calendar, text};
    TimeEntryFormSheet form(environment, {.task = offer.id()});
    EXPECT_EQ(form.windowTitle(), "Log Time");
    EXPECT_EQ(form.project(), site.id());
    EXPECT_EQ(form.duration().text, "1:00");
    form.setStartTime(7h);
    form.setEndTime(7h);
    EXPECT_EQ(form.fault(), "end must differ from start");
    form.chooseQuick(120);
    EXPECT_EQ(form.overlap(), "Overlaps 2026-01-15T08:00:00Z (8:00 AM – 9:00 AM) and 2 more");
    form.setEndTime(6h);
    EXPECT_EQ(form.duration().text, "23:00 · ends next day");
    ASSERT_TRUE(form.save());
    const auto* logged = *offer.timeEntries().begin();
    EXPECT_EQ(logged->endTime(), date("2026-01-16T06:00:00Z"));
    EXPECT_EQ(logged->project(), nullptr);

    timer.start(offer, context);
    queue.advance(90s);
    TimeEntryFormSheet running(environment, *timer.activeEntry(context));
    EXPECT_EQ(running.windowTitle(), "Edit Running Timer");
    EXPECT_EQ(running.duration().text, "01:30");
    EXPECT_EQ(running.overlap(), std::nullopt);
    running.setStartTime(13h);
    EXPECT_EQ(running.fault(), "a running timer can't start in the future");
    running.setStartTime(11h);
    ASSERT_TRUE(running.save());
    EXPECT_EQ(timer.elapsedTime(), 3690);

    auto& long_ = track("2026-01-10T08:00:00Z", "2026-01-12T09:00:00Z"); // longer than a form can say
    save();
    TimeEntryFormSheet edit(environment, long_);
    edit.setNotes("On the train");
    ASSERT_TRUE(edit.save());
    EXPECT_EQ(long_.endTime(), date("2026-01-12T09:00:00Z"));
    context.remove(long_);
    EXPECT_EQ(edit.fault(), "the time entry has been deleted");
}

} // namespace
} // namespace quillorn
