#include "Views/TimeDashboard.h"

#include "Models/Client.h"
#include "Models/DeletionQuestions.h"
#include "Models/Formatters.h"
#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/TimeEntry.h"
#include "Platform/Calendar.h"
#include "Platform/Clock.h"
#include "Store/MainContext.h"
#include "Store/StoreError.h"
#include "Views/ChangedKeys.h"
#include "Views/TimeEntryRules.h"

#include <algorithm>
#include <fmt/core.h>

namespace quillorn {

namespace {

const std::string amongKeys = " IN (SELECT value FROM json_each(?1))";

/// Which entries are read for a scope at first, without looking at all others.
const char* conditionOf(TimeScope::Kind kind) {
    switch (kind) {
    case TimeScope::Kind::all:
        return "?1 = 0";
    case TimeScope::Kind::task:
        return "TimeEntry.task = ?1";
    case TimeScope::Kind::project:
        return "TimeEntry.key IN (SELECT key FROM TimeEntry WHERE project = ?1 UNION ALL "
               "SELECT key FROM TimeEntry WHERE task IN (SELECT key FROM ProjectTask WHERE project = ?1))";
    case TimeScope::Kind::client:
        break;
    }
    return "TimeEntry.key IN (WITH wanted AS (SELECT key FROM Project WHERE client = ?1) "
           "SELECT key FROM TimeEntry WHERE project IN wanted UNION ALL "
           "SELECT key FROM TimeEntry WHERE task IN (SELECT key FROM ProjectTask WHERE project IN wanted))";
}

const EntityType* typeOf(TimeScope::Kind kind) {
    switch (kind) {
    case TimeScope::Kind::client:
        return &Client::entityType();
    case TimeScope::Kind::project:
        return &Project::entityType();
    case TimeScope::Kind::task:
        return &ProjectTask::entityType();
    case TimeScope::Kind::all:
        break;
    }
    return nullptr;
}

/// That a project, or its task's, is nobody's has no place among the places.
RowKey placeOf(const std::unordered_map<RowKey, RowKey>& places, RowKey key) {
    const auto found = places.find(key);
    return found != places.end() ? found->second : 0;
}

} // namespace

TimeDashboard::TimeDashboard(MainContext& main, const Clock& clock, const Calendar& calendar, TimeScope scope)
    : m_main(main),
      m_clock(clock),
      m_calendar(calendar),
      m_scope(scope),
      m_stats(calendar) {
    load();
    m_changes = main.observe([this](const ChangeSet& changes) { follow(changes); });
}

void TimeDashboard::update() {
    if (m_isStale)
        load();
    else if (m_stats.hasRunning() || m_calendar.startOfDay(m_clock.now()) != m_day)
        show();
}

void TimeDashboard::load() {
    m_isStale = true;
    m_stats.clear();
    m_entries.clear();
    m_byStart.clear();
    try {
        readScope();
        m_projects.clear();
        m_clients.clear();
        readPlaces(m_projects, "ProjectTask", "project", {});
        readPlaces(m_clients, "Project", "client", {});
        read(conditionOf(m_scope.kind), std::int64_t{m_scopeKey});
        m_isStale = false;
    } catch (const StoreError&) {
        // What could be read is shown; it reads anew when the store has changed again or time has moved on.
    }
    show();
}

void TimeDashboard::readScope() {
    m_scopeKey = 0;
    const EntityType* type = typeOf(m_scope.kind);
    if (type == nullptr)
        return;
    const StatementLoan row =
        m_main.context().statement(fmt::format("SELECT key FROM {} WHERE id = ? ORDER BY key", type->name));
    row->bind(1, m_scope.id);
    if (row->step())
        m_scopeKey = row->integer(0);
}

bool TimeDashboard::isInScope(RowKey task, RowKey project, RowKey projectOfTask) const {
    switch (m_scope.kind) {
    case TimeScope::Kind::all:
        return true;
    case TimeScope::Kind::task:
        return task == m_scopeKey;
    case TimeScope::Kind::project:
        return project == m_scopeKey || projectOfTask == m_scopeKey;
    case TimeScope::Kind::client:
        break;
    }
    return placeOf(m_clients, project) == m_scopeKey || placeOf(m_clients, projectOfTask) == m_scopeKey;
}

void TimeDashboard::read(const std::string& condition, const SQLValue& value) {
    const StatementLoan rows =
        m_main.context().statement("SELECT key, startTime, endTime, task, project FROM TimeEntry WHERE " + condition);
    rows->bindValue(1, value);
    const auto date = [&](int column) { return Date(std::chrono::microseconds(rows->integer(column))); };
    const bool isMany = m_entries.empty();
    while (rows->step()) {
        const RowKey task = rows->integer(3);
        const RowKey own = rows->integer(4);
        const RowKey ofTask = placeOf(m_projects, task);
        if (!isInScope(task, own, ofTask))
            continue;
        TrackedTime entry{rows->integer(0), date(1), {}, task, own != 0 ? own : ofTask};
        if (!rows->isNull(2))
            entry.end = date(2);
        if (!m_entries.emplace(entry.key, entry).second)
            continue;
        m_stats.add(entry);
        const std::pair place(entry.start, entry.key);
        m_byStart.insert(isMany ? m_byStart.end() : std::ranges::upper_bound(m_byStart, place), place);
    }
    if (isMany)
        std::ranges::sort(m_byStart);
}

std::vector<RowKey> TimeDashboard::readPlaces(Places& places, const char* table, const char* column,
                                              const std::vector<RowKey>& keys) const {
    const StatementLoan rows = m_main.context().statement(fmt::format(
        "SELECT key, {} FROM {} WHERE {}", column, table, keys.empty() ? "?1 IS NOT NULL" : "key" + amongKeys));
    rows->bind(1, std::string_view(keyList(keys)));
    std::vector<RowKey> moved;
    while (rows->step()) {
        const auto [place, isNew] = places.try_emplace(rows->integer(0), rows->integer(1));
        if (isNew || place->second == rows->integer(1))
            continue;
        place->second = rows->integer(1);
        moved.push_back(place->first);
    }
    return moved;
}

void TimeDashboard::forget(const std::vector<RowKey>& keys) {
    for (const RowKey key : keys) {
        const auto found = m_entries.find(key);
        if (found == m_entries.end())
            continue;
        m_stats.remove(found->second);
        m_byStart.erase(std::ranges::lower_bound(m_byStart, std::pair(found->second.start, key)));
        m_entries.erase(found);
    }
}

void TimeDashboard::follow(const ChangeSet& changes) {
    if (m_isStale || changes.isEverything || (m_scope.kind != TimeScope::Kind::all && m_scopeKey == 0))
        return load();
    std::vector<RowKey> entries = changedKeys(changes, TimeEntry::entityType());
    const std::vector<RowKey> tasks = changedKeys(changes, ProjectTask::entityType());
    const std::vector<RowKey> projects = changedKeys(changes, Project::entityType());
    if (entries.empty() && tasks.empty() && projects.empty())
        return;
    try {
        if (!projects.empty() && !readPlaces(m_clients, "Project", "client", projects).empty() &&
            m_scope.kind == TimeScope::Kind::client)
            return load();
        if (!tasks.empty())
            if (const auto moved = readPlaces(m_projects, "ProjectTask", "project", tasks); !moved.empty()) {
                const StatementLoan rows =
                    m_main.context().statement("SELECT key FROM TimeEntry WHERE task" + amongKeys);
                rows->bind(1, std::string_view(keyList(moved)));
                while (rows->step())
                    entries.push_back(rows->integer(0));
            }
        forget(entries);
        if (!entries.empty())
            read("key" + amongKeys, keyList(entries));
    } catch (const StoreError&) {
        return load();
    }
    show();
}

void TimeDashboard::show() {
    const Date now = m_clock.now();
    m_day = m_calendar.startOfDay(now);
    m_figures = timeFigures(m_stats, now);
    const auto days = m_stats.lastSevenDays(now);
    std::ranges::transform(days, m_bars.begin(), [&](const TimeEntryStats::Day& day) {
        return Bar{m_calendar.format(m_calendar.instant(day.day + std::chrono::hours{12}), "EEE"),
                   hoursAndMinutes(day.seconds), day.seconds};
    });
    m_byProject = shareRows(m_stats.byProject(now, mostProjects),
                            "SELECT key, id, name, color FROM Project WHERE key IN (SELECT value FROM json_each(?))",
                            "No Project");
    m_byTask = shareRows(m_stats.byTask(now, mostTasks),
                         "SELECT ProjectTask.key, ProjectTask.id, title, color FROM ProjectTask "
                         "LEFT JOIN Project ON Project.key = project "
                         "WHERE ProjectTask.key IN (SELECT value FROM json_each(?))",
                         "No Task");
    m_recent.assign(recentRows());
    m_observers.tell();
}

std::vector<TimeDashboard::ShareRow> TimeDashboard::shareRows(const std::vector<TimeEntryStats::Share>& shares,
                                                              const char* sql, std::string_view nameOfNone) const {
    std::vector<RowKey> keys;
    keys.reserve(shares.size());
    for (const TimeEntryStats::Share& share : shares)
        keys.push_back(share.key);
    std::unordered_map<RowKey, ShareRow> named{{0, {.name = std::string(nameOfNone)}}};
    const StatementLoan rows = m_main.context().statement(sql);
    rows->bind(1, std::string_view(keyList(keys)));
    while (rows->step())
        named[rows->integer(0)] = {
            .id = rows->uuid(1), .name = std::string(rows->text(2)), .color = std::string(rows->text(3))};
    std::vector<ShareRow> result;
    for (const TimeEntryStats::Share& share : shares) {
        ShareRow row = named[share.key];
        row.value = hoursAndMinutes(share.seconds);
        row.part = shares.front().seconds > 0 ? std::max(0.0, share.seconds / shares.front().seconds) : 0;
        result.push_back(std::move(row));
    }
    return result;
}

std::vector<TimeDashboard::RecentRow> TimeDashboard::recentRows() const {
    const std::size_t count = std::min(mostRecent, m_byStart.size());
    std::vector<RowKey> keys;
    for (std::size_t place = m_byStart.size(); place > m_byStart.size() - count; --place)
        keys.push_back(m_byStart[place - 1].second);
    const auto entries = m_main.context().fetch<TimeEntry>(
        {.where = "key" + amongKeys, .values = {keyList(keys)}, .order = "startTime DESC, key DESC"});
    std::vector<RecentRow> rows;
    const TimeEntry* previous = nullptr;
    for (const TimeEntry* entry : entries) {
        if (previous == nullptr || !m_calendar.isSameDay(previous->startTime(), entry->startTime()))
            rows.push_back(headingOf(*entry));
        rows.push_back(rowOf(*entry));
        previous = entry;
    }
    return rows;
}

TimeDashboard::RecentRow TimeDashboard::headingOf(const TimeEntry& first) const {
    const std::chrono::local_days day{m_calendar.day(first.startTime())};
    return {.id = fmt::format("day {}", day.time_since_epoch().count()),
            .isHeading = true,
            .title = m_calendar.format(first.startTime(), "EEEE"),
            .subtitle = m_calendar.mediumDate(first.startTime()),
            .duration = hoursAndMinutes(m_stats.onDay(day, m_clock.now()))};
}

TimeDashboard::RecentRow TimeDashboard::rowOf(const TimeEntry& entry) const {
    const Project* project = entry.project();
    if (project == nullptr && entry.task() != nullptr)
        project = entry.task()->project();
    return {.id = entry.id().string(),
            .title = entry.displayName(),
            .subtitle = project != nullptr ? project->name() : "",
            .color = project != nullptr ? project->color() : "",
            .times = entry.isRunning() ? "Recording..." : timeSpan(entry.startTime(), entry.endTime(), m_calendar),
            .duration = entry.formattedDuration(m_clock.now()),
            .notes = entry.notes().value_or(""),
            .isRunning = entry.isRunning(),
            .entry = entry.id()};
}

std::optional<Confirmation> TimeDashboard::confirmationFor(const UUID& entry) const {
    const TimeEntry* found = m_main.context().find<TimeEntry>(entry);
    return found != nullptr ? std::optional(deletionOfTimeEntry(*found)) : std::nullopt;
}

void TimeDashboard::remove(const UUID& entry) {
    auto* found = m_main.context().find<TimeEntry>(entry);
    if (found == nullptr)
        return;
    m_main.context().remove(*found);
    m_main.save();
}

} // namespace quillorn
