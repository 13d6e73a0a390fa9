#include "Views/TimeEntryStats.h"

#include "Models/Formatters.h"
#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/TimeEntry.h"
#include "Platform/Calendar.h"

#include <algorithm>
#include <fmt/core.h>

namespace quillorn {

using std::chrono::days;
using Seconds = std::chrono::duration<double>;
using std::chrono::local_days;
using std::chrono::months;
using std::chrono::year_month;
using std::chrono::year_month_day;

namespace {

year_month monthOf(Date date, const Calendar& calendar) {
    const year_month_day day = calendar.day(date);
    return day.year() / day.month();
}

local_days firstOf(year_month month) {
    return local_days{month / 1};
}

} // namespace

TrackedTime TrackedTime::of(const TimeEntry& entry) {
    const Project* project = entry.project();
    if (project == nullptr && entry.task() != nullptr)
        project = entry.task()->project();
    return {entry.key(), entry.startTime(), entry.endTime(), entry.taskKey(), project != nullptr ? project->key() : 0};
}

void TimeEntryStats::count(const TrackedTime& entry, int sign) {
    const Time time = entry.end ? (*entry.end - entry.start) * sign : Time{0};
    const auto change = [&](auto& buckets, const auto& key) {
        Bucket& bucket = buckets[key];
        bucket.time += time;
        if (sign > 0)
            ++bucket.entries;
        else if (--bucket.entries == 0)
            buckets.erase(key);
    };
    m_entries = sign > 0 ? m_entries + 1 : m_entries - 1;
    m_total += time;
    change(m_days, dayOf(entry.start));
    change(m_projects, entry.project);
    change(m_tasks, entry.task);
    if (sign < 0)
        std::erase(m_running, entry);
    else if (!entry.end)
        m_running.push_back(entry);
}

void TimeEntryStats::clear() {
    m_entries = 0;
    m_total = Time{0};
    m_days.clear();
    m_projects.clear();
    m_tasks.clear();
    m_running.clear();
}

local_days TimeEntryStats::dayOf(Date date) const {
    return local_days{m_calendar.day(date)};
}

double TimeEntryStats::total(Date now) const {
    Time time = m_total;
    for (const TrackedTime& entry : m_running)
        time += now - entry.start;
    return Seconds(time).count();
}

double TimeEntryStats::between(local_days first, local_days end, Date now) const {
    Time time{0};
    for (auto day = m_days.lower_bound(first); day != m_days.end() && day->first < end; ++day)
        time += day->second.time;
    for (const TrackedTime& entry : m_running)
        if (const local_days day = dayOf(entry.start); day >= first && day < end)
            time += now - entry.start;
    return Seconds(time).count();
}

double TimeEntryStats::onDay(local_days day, Date now) const {
    return between(day, day + days{1}, now);
}

double TimeEntryStats::today(Date now) const {
    return onDay(dayOf(now), now);
}

double TimeEntryStats::thisWeek(Date now) const {
    const local_days first{m_calendar.firstDayOfWeek(now)};
    return between(first, first + days{7}, now);
}

double TimeEntryStats::thisMonth(Date now) const {
    const year_month month = monthOf(now, m_calendar);
    return between(firstOf(month), firstOf(month + months{1}), now);
}

double TimeEntryStats::lastMonth(Date now) const {
    const year_month month = monthOf(now, m_calendar);
    return between(firstOf(month - months{1}), firstOf(month), now);
}

std::array<TimeEntryStats::Day, 7> TimeEntryStats::lastSevenDays(Date now) const {
    std::array<Day, 7> result{};
    local_days day = dayOf(now) - days{6};
    for (Day& each : result) {
        each = {day, onDay(day, now)};
        day += days{1};
    }
    return result;
}

std::vector<TimeEntryStats::Share> TimeEntryStats::shares(const Buckets& buckets, RowKey TrackedTime::* member,
                                                          Date now, std::size_t most) const {
    std::vector<Share> result;
    result.reserve(buckets.size());
    for (const auto& [key, bucket] : buckets) {
        Time time = bucket.time;
        for (const TrackedTime& entry : m_running)
            if (entry.*member == key)
                time += now - entry.start;
        result.push_back({key, Seconds(time).count()});
    }
    const std::size_t count = std::min(most, result.size());
    std::ranges::partial_sort(
        result, result.begin() + static_cast<std::ptrdiff_t>(count),
        [](const Share& a, const Share& b) { return a.seconds != b.seconds ? a.seconds > b.seconds : a.key < b.key; });
    result.resize(count);
    return result;
}

std::vector<TimeEntryStats::Share> TimeEntryStats::byProject(Date now, std::size_t most) const {
    return shares(m_projects, &TrackedTime::project, now, most);
}

std::vector<TimeEntryStats::Share> TimeEntryStats::byTask(Date now, std::size_t most) const {
    return shares(m_tasks, &TrackedTime::task, now, most);
}

std::vector<TimeFigure> timeFigures(const TimeEntryStats& stats, Date now) {
    return {
        {"Total Tracked", hoursAndMinutes(stats.total(now)), entryCountLabel(stats.size())},
        {"Today", hoursAndMinutes(stats.today(now))},
        {"This Week", hoursAndMinutes(stats.thisWeek(now))},
        {"This Month", hoursAndMinutes(stats.thisMonth(now))},
        {"Last Month", hoursAndMinutes(stats.lastMonth(now))},
    };
}

std::string entryCountLabel(std::size_t count) {
    return fmt::format("{} {}", count, count == 1 ? "entry" : "entries");
}

} // namespace quillorn
