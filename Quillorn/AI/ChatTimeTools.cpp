#include "AI/ChatTool.h"

#include "Models/Formatters.h"
#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/TimeEntry.h"
#include "Models/TimeSpent.h"
#include "Platform/Calendar.h"

#include <algorithm>
#include <limits>
#include <string>

namespace quillorn {

namespace {

constexpr std::size_t entriesOfAList = 20;
constexpr std::size_t tasksOfASummary = 10;
constexpr std::size_t completedOfAnActivity = 15;
constexpr std::size_t entriesOfAnActivity = 10;
constexpr std::int64_t daysOfAnActivity = 7;
constexpr double secondsOfADay = 86'400;

/// The window of `since`, or of the last `days`, and `until`; both ends count.
void restrictToWindow(const ChatToolCall& call, Query& query, const std::string& column,
                      std::optional<std::int64_t> days) {
    std::optional<Date> start = call.arguments.instant("since");
    if (!start && days)
        start = shifted(call.now, -static_cast<double>(*days) * secondsOfADay);
    if (start)
        restrict(query, column + " >= ?", {start->time_since_epoch().count()});
    if (const auto end = call.arguments.instant("until"))
        restrict(query, column + " <= ?", {end->time_since_epoch().count()});
}

void restrictToProject(const ChatToolCall& call, Query& query) {
    if (const auto project = call.arguments.id("projectId"))
        restrict(query,
                 "(TimeEntry.project IN (SELECT key FROM Project WHERE id = ?) OR TimeEntry.task IN (SELECT key FROM "
                 "ProjectTask WHERE project IN (SELECT key FROM Project WHERE id = ?)))",
                 {*project, *project});
}

std::vector<TimeEntry*> latestEntries(const ChatToolCall& call, Query query, std::size_t limit) {
    const auto count = std::min<std::size_t>(limit, std::numeric_limits<std::int32_t>::max());
    query.order = "startTime DESC, key LIMIT " + std::to_string(count);
    return call.context.fetch<TimeEntry>(query);
}

/// Seconds by key, in the order in which the keys came up.
class Shares {
  public:
    void add(RowKey key, const Statement& row, int startColumn, Date now) {
        std::size_t& place = m_places[key];
        if (place == 0) {
            m_shares.push_back({key, {}});
            place = m_shares.size();
        }
        m_shares[place - 1].time.add(row, startColumn, now);
    }

    struct Share {
        RowKey key = 0;
        TimeSum time;
    };
    /// The largest ones first.
    std::vector<Share> largest(std::size_t limit = std::numeric_limits<std::size_t>::max()) && {
        std::ranges::stable_sort(m_shares, std::greater<>(), [](const Share& share) { return share.time.seconds(); });
        m_shares.resize(std::min(m_shares.size(), limit));
        return std::move(m_shares);
    }

  private:
    std::vector<Share> m_shares;
    KeyMap<std::size_t> m_places; // from 1 on
};

struct Distribution {
    TimeSum total;
    std::int64_t entryCount = 0;
    Shares projects;
    Shares tasks;
};

Distribution distributionOf(const ChatToolCall& call) {
    Query query = call.timeEntriesInScope();
    restrictToProject(call, query);
    const auto days = call.arguments.integer("days");
    restrictToWindow(call, query, "TimeEntry.startTime", days);
    const StatementLoan rows = call.context.statement(
        "SELECT TimeEntry.startTime, TimeEntry.endTime, TimeEntry.task, ifnull(t.project, TimeEntry.project) "
        "FROM TimeEntry LEFT JOIN ProjectTask t ON t.key = TimeEntry.task WHERE " +
        query.where + " ORDER BY TimeEntry.key");
    rows->bindAll(query.values);
    Distribution distribution;
    while (rows->step()) {
        ++distribution.entryCount;
        distribution.total.add(*rows, 0, call.now);
        if (!rows->isNull(3))
            distribution.projects.add(rows->integer(3), *rows, 0, call.now);
        if (!rows->isNull(2))
            distribution.tasks.add(rows->integer(2), *rows, 0, call.now);
    }
    return distribution;
}

Json projectBreakdown(const ChatToolCall& call, Shares shares) {
    const auto largest = std::move(shares).largest();
    std::vector<RowKey> keys;
    std::ranges::transform(largest, std::back_inserter(keys), &Shares::Share::key);
    KeyMap<const Project*> projects;
    for (const Project* project : objectsOf<Project>(call.context, keys))
        projects[project->key()] = project;
    Json::Array result;
    for (const auto& share : largest)
        result.emplace_back(
            Json::Object{{"project", projects[share.key]->name()}, {"hours", hoursOf(share.time.seconds())}});
    return result;
}

Json taskBreakdown(const ChatToolCall& call, Shares shares) {
    const auto largest = std::move(shares).largest(tasksOfASummary);
    std::vector<RowKey> keys;
    std::ranges::transform(largest, std::back_inserter(keys), &Shares::Share::key);
    const auto tasks = objectsOf<ProjectTask>(call.context, keys);
    Json::Array result;
    for (std::size_t i = 0; i < tasks.size(); ++i)
        result.emplace_back(
            Json::Object{{"task", tasks[i]->title()},
                         {"project", tasks[i]->project() != nullptr ? tasks[i]->project()->name() : "Unknown"},
                         {"hours", hoursOf(largest[i].time.seconds())}});
    return result;
}

Json getTimeSummary(const ChatToolCall& call) {
    Distribution distribution = distributionOf(call);
    return Json::Object{{"totalTime", hoursAndMinutes(distribution.total.seconds())},
                        {"totalHours", hoursOf(distribution.total.seconds())},
                        {"entryCount", distribution.entryCount},
                        {"projectBreakdown", projectBreakdown(call, std::move(distribution.projects))},
                        {"taskBreakdown", taskBreakdown(call, std::move(distribution.tasks))}};
}

Json listTimeEntries(const ChatToolCall& call) {
    Query query = call.timeEntriesInScope();
    restrictToProject(call, query);
    if (const auto task = call.arguments.id("taskId"))
        restrict(query, "TimeEntry.task IN (SELECT key FROM ProjectTask WHERE id = ?)", {*task});
    return timeEntryObjects(call, latestEntries(call, query, call.arguments.limit(entriesOfAList)));
}

Json::Array completedTasks(const ChatToolCall& call, std::int64_t days) {
    Query query = call.tasksInScope();
    restrict(query, "completedAt IS NOT NULL");
    restrictToWindow(call, query, "completedAt", days);
    query.order = "completedAt DESC, key LIMIT " + std::to_string(completedOfAnActivity);
    Json::Array result;
    for (const ProjectTask* task : call.context.fetch<ProjectTask>(query))
        result.emplace_back(Json::Object{{"title", task->title()},
                                         {"project", task->project() != nullptr ? task->project()->name() : "Unknown"},
                                         {"completedAt", call.moment(*task->completedAt())},
                                         {"priority", label(task->priority())}});
    return result;
}

Json getRecentActivity(const ChatToolCall& call) {
    const std::int64_t days = call.arguments.integer("days").value_or(daysOfAnActivity);
    Query query = call.timeEntriesInScope();
    restrictToWindow(call, query, "TimeEntry.startTime", days);
    return Json::Object{{"days", days},
                        {"completedTasks", completedTasks(call, days)},
                        {"recentTimeEntries", timeEntryObjects(call, latestEntries(call, query, entriesOfAnActivity))}};
}

} // namespace

Json::Array timeEntryObjects(const ChatToolCall& call, const std::vector<TimeEntry*>& entries) {
    Json::Array result;
    for (const TimeEntry* entry : entries) {
        const ProjectTask* task = entry->task();
        const Project* project = task != nullptr && task->project() != nullptr ? task->project() : entry->project();
        Json::Object object{{"id", entry->id().string()},
                            {"displayName", entry->displayName()},
                            {"duration", entry->formattedDuration(call.now)},
                            {"date", call.moment(entry->startTime())},
                            {"isRunning", entry->isRunning()}};
        if (project != nullptr)
            object["project"] = project->name();
        if (task != nullptr)
            object["task"] = task->title();
        if (entry->notes() && !entry->notes()->empty())
            object["notes"] = *entry->notes();
        result.emplace_back(std::move(object));
    }
    return result;
}

std::vector<ChatTool> chatTimeTools() {
    return {
        {"get_time_summary",
         "Get time tracking totals and breakdowns. Shows per-project and per-task time distribution.",
         {{"projectId", "string", "Filter to a specific project ID (UUID)."},
          {"days", "integer", "Only include entries from the last N days. Defaults to all time."}},
         &getTimeSummary},
        {"list_time_entries",
         "List recent time entries with duration, date, task, and notes.",
         {{"projectId", "string", "Filter by project ID (UUID)."},
          {"taskId", "string", "Filter by task ID (UUID)."},
          {"limit", "integer", "Maximum entries to return. Defaults to 20."}},
         &listTimeEntries},
        {"get_recent_activity",
         "Get recently completed tasks and recent time entries. Useful for status updates and progress reports.",
         {{"days", "integer", "Look back N days. Defaults to 7."}},
         &getRecentActivity},
    };
}

} // namespace quillorn
