#include "Views/TimeReport.h"

#include "Platform/Calendar.h"
#include "Platform/Text.h"
#include "Store/KeyMap.h"
#include "Store/ModelContext.h"

#include <algorithm>
#include <cstdint>
#include <fmt/core.h>
#include <unordered_map>
#include <utility>

namespace quillorn {

using std::chrono::days;
using std::chrono::local_days;
using Link = ReportedTime::Link;
using Seconds = std::chrono::duration<double>;

const std::vector<std::string> timeReportGroupings = {"day", "week", "project", "task", "client", "tag"};

namespace {

constexpr std::string_view nothing = "none";

/// The group that an entry belongs to.
struct Group {
    std::string key;
    std::string title;
};

Group groupOf(const std::optional<Link>& link, std::string_view titleOfNone) {
    if (!link)
        return {std::string(nothing), std::string(titleOfNone)};
    return {link->id.string(), link->name};
}

Group groupOfTask(const ReportedTime& time) {
    if (time.task || !time.project)
        return groupOf(time.task, "Unassigned");
    return {time.project->id.string(), time.project->name + " (General)"};
}

std::vector<Group> groupsOf(const ReportedTime& time, TimeReportGrouping by, const Calendar& calendar) {
    const local_days day{calendar.day(time.start)};
    switch (by) {
    case TimeReportGrouping::day:
        return {{isoDay(day), isoDay(day)}};
    case TimeReportGrouping::week: {
        const std::string monday = isoDay(day - (std::chrono::weekday{day} - std::chrono::Monday));
        return {{monday, "Week of " + monday}};
    }
    case TimeReportGrouping::project:
        return {groupOf(time.project, "No Project")};
    case TimeReportGrouping::task:
        return {groupOfTask(time)};
    case TimeReportGrouping::client:
        return {groupOf(time.client, "No Client")};
    case TimeReportGrouping::tag:
        break;
    }
    std::vector<Group> groups;
    groups.reserve(time.tags.size());
    for (const Link& tag : time.tags)
        groups.push_back(groupOf(tag, {}));
    if (groups.empty())
        groups.push_back(groupOf(std::nullopt, "No Tag"));
    return groups;
}

std::chrono::microseconds rounded(std::chrono::microseconds time, std::chrono::minutes step) {
    if (step.count() <= 0 || time.count() <= 0)
        return time;
    const std::chrono::microseconds unit = step;
    return (time + unit - std::chrono::microseconds{1}) / unit * unit;
}

void sort(std::vector<TimeReport::Row>& rows, TimeReportGrouping by, const Text& text) {
    using Row = TimeReport::Row;
    const bool isByTime = by == TimeReportGrouping::day || by == TimeReportGrouping::week;
    std::ranges::sort(rows, [&](const Row& a, const Row& b) {
        if (isByTime)
            return a.key < b.key;
        if (a.seconds != b.seconds)
            return a.seconds > b.seconds;
        const int order = text.compare(a.title, b.title);
        return order != 0 ? order < 0 : a.key < b.key;
    });
}

// The tables as they follow from an entry: its task, its project and that one's client.
constexpr std::string_view selectTimes = R"(
SELECT TimeEntry.startTime, TimeEntry.endTime, ProjectTask.key, ProjectTask.id, ProjectTask.title,
       Project.id, Project.name, Client.id, Client.name
FROM TimeEntry
LEFT JOIN ProjectTask ON ProjectTask.key = TimeEntry.task
LEFT JOIN Project ON Project.key = COALESCE(TimeEntry.project, ProjectTask.project)
LEFT JOIN Client ON Client.key = Project.client
WHERE TimeEntry.startTime >= ?1 AND TimeEntry.startTime < ?2
  AND (?3 IS NULL OR Client.id = ?3) AND (?4 IS NULL OR Project.id = ?4)
ORDER BY TimeEntry.startTime, TimeEntry.key)";

std::optional<Link> link(const Statement& row, int column) {
    if (row.isNull(column))
        return std::nullopt;
    return Link{row.uuid(column), std::string(row.text(column + 1))};
}

/// The tags of tasks, by the tasks' keys.
using TagTable = std::unordered_map<RowKey, std::vector<Link>>;

TagTable readTags(ModelContext& context) {
    TagTable tags;
    const StatementLoan rows =
        context.statement("SELECT task, Tag.id, Tag.name FROM ProjectTask_Tag JOIN Tag ON Tag.key = tag");
    while (rows->step())
        tags[rows->integer(0)].push_back(*link(*rows, 1));
    return tags;
}

} // namespace

std::vector<ReportedTime> reportedTimes(ModelContext& context, const TimeReportRequest& request,
                                        const Calendar& calendar) {
    const auto start = [&](local_days day) {
        const Date noon = calendar.instant(day + std::chrono::hours{12});
        return std::int64_t{calendar.startOfDay(noon).time_since_epoch().count()};
    };
    const auto idOrNull = [](const std::optional<UUID>& id) { return id ? SQLValue(*id) : SQLValue(); };
    const TagTable tags = request.by == TimeReportGrouping::tag ? readTags(context) : TagTable();
    const StatementLoan rows = context.statement(selectTimes);
    rows->bindAll(
        {start(request.from), start(request.to + days{1}), idOrNull(request.client), idOrNull(request.project)});
    std::vector<ReportedTime> times;
    const auto date = [&](int column) { return Date(std::chrono::microseconds(rows->integer(column))); };
    while (rows->step()) {
        ReportedTime& time = times.emplace_back();
        time.start = date(0);
        if (!rows->isNull(1))
            time.end = date(1);
        if (const auto found = tags.find(rows->integer(2)); found != tags.end())
            time.tags = found->second;
        time.task = link(*rows, 3);
        time.project = link(*rows, 5);
        time.client = link(*rows, 7);
    }
    return times;
}

TimeReport timeReport(const std::vector<ReportedTime>& times, const TimeReportRequest& request, Date now,
                      const Calendar& calendar, const Text& text) {
    struct Sum {
        std::chrono::microseconds time{0};
        std::size_t entries = 0;
        std::string title;
    };
    TimeReport report{.request = request};
    std::chrono::microseconds total{0};
    std::unordered_map<std::string, Sum> sums;
    for (const ReportedTime& time : times) {
        const auto spent = rounded(time.end.value_or(now) - time.start, request.rounding);
        total += spent;
        for (Group& group : groupsOf(time, request.by, calendar)) {
            Sum& sum = sums[std::move(group.key)];
            sum.time += spent;
            ++sum.entries;
            sum.title = std::move(group.title);
        }
    }
    for (auto& [key, sum] : sums)
        report.rows.push_back({key, std::move(sum.title), Seconds(sum.time).count(), sum.entries});
    sort(report.rows, request.by, text);
    report.totalSeconds = Seconds(total).count();
    report.entries = times.size();
    return report;
}

std::string isoDay(local_days day) {
    const std::chrono::year_month_day date{day};
    return fmt::format("{:04}-{:02}-{:02}", static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                       static_cast<unsigned>(date.day()));
}

} // namespace quillorn
