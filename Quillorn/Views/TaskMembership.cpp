#include "Views/TaskMembership.h"

#include "Models/ProjectTask.h"
#include "Platform/Calendar.h"
#include "Store/ModelContext.h"

namespace quillorn {

namespace {

using std::chrono::days;
using std::chrono::local_days;

SQLValue stored(Date date) {
    return std::int64_t{date.time_since_epoch().count()};
}

/// Due today, overdue, or being worked on.
Query today(const TaskMoment& moment) {
    return {.where = "completedAt IS NULL AND (status = ? OR dueDate < ?)",
            .values = {static_cast<std::int64_t>(TaskStatus::inProgress), stored(moment.todayLimit)}};
}

Query members(const TaskFilter& filter, const TaskMoment& moment) {
    switch (filter.kind) {
    case TaskFilter::Kind::project:
        return {.where = "project IN (SELECT key FROM Project WHERE id = ?)", .values = {filter.id}};
    case TaskFilter::Kind::tag:
        return {.where = "key IN (SELECT task FROM ProjectTask_Tag WHERE tag IN (SELECT key FROM Tag WHERE id = ?))",
                .values = {filter.id}};
    case TaskFilter::Kind::client:
        return {.where = "project IN (SELECT key FROM Project WHERE client IN (SELECT key FROM Client WHERE id = ?))",
                .values = {filter.id}};
    case TaskFilter::Kind::today:
        return today(moment);
    case TaskFilter::Kind::upcoming:
        return {.where = "dueDate > ? AND dueDate <= ?", .values = {stored(moment.now), stored(moment.upcomingLimit)}};
    case TaskFilter::Kind::all:
        break;
    }
    return {};
}

} // namespace

TaskMoment TaskMoment::at(Date now, const Calendar& calendar) {
    const auto startOf = [&](local_days day) {
        return calendar.startOfDay(calendar.instant(day + std::chrono::hours(12)));
    };
    const local_days day{calendar.day(now)};
    const Date start = calendar.startOfDay(now);
    return {
        .now = now,
        .startOfToday = start,
        .startOfTomorrow = startOf(day + days{1}),
        .endOfTomorrow = startOf(day + days{2}),
        .endOfWeek = startOf(local_days{calendar.firstDayOfWeek(now)} + days{7}),
        .todayLimit = start + std::chrono::seconds(86'400),
        .upcomingLimit = calendar.addDays(now, 7),
    };
}

Query taskQuery(const TaskFilter& filter, const TaskMoment& moment, bool showCompleted) {
    Query query = members(filter, moment);
    if (!showCompleted && filter.kind != TaskFilter::Kind::today)
        query.where = query.where.empty() ? "completedAt IS NULL" : "completedAt IS NULL AND " + query.where;
    return query;
}

Query todayCountQuery(const TaskMoment& moment) {
    Query query = today(moment);
    query.where = "parentTask IS NULL AND " + query.where;
    return query;
}

} // namespace quillorn
