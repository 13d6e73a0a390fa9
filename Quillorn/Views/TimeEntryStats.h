#pragma once

#include "Platform/Date.h"
#include "Store/Relation.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quillorn {

class Calendar;
class TimeEntry;

/// A time entry as sums need it, without its texts.
struct TrackedTime {
    RowKey key = 0;
    Date start{};
    /// Absent while it runs.
    std::optional<Date> end{};
    /// 0 for none.
    RowKey task = 0;
    /// The entry's own, else that of its task; 0 for none.
    RowKey project = 0;

    /// Of a saved entry.
    static TrackedTime of(const TimeEntry& entry);

    friend bool operator==(const TrackedTime&, const TrackedTime&) = default;
};

/// Sums of tracked time, kept up as entries come and go, so that a figure looks at none of them again; running ones
/// count up to the moment of the question. An entry counts whole in the day, week and month in which it began.
class TimeEntryStats {
  public:
    static constexpr std::string_view noProjectData = "No project data";
    static constexpr std::string_view noTaskData = "No task data";
    static constexpr std::string_view showAllButton = "Show All";

    explicit TimeEntryStats(const Calendar& calendar) : m_calendar(calendar) {}

    void add(const TrackedTime& entry) { count(entry, 1); }
    /// As it was added.
    void remove(const TrackedTime& entry) { count(entry, -1); }
    void clear();

    std::size_t size() const { return m_entries; }
    bool hasRunning() const { return !m_running.empty(); }

    // In seconds.
    double total(Date now) const;
    double today(Date now) const;
    /// The week begins as the locale's do.
    double thisWeek(Date now) const;
    double thisMonth(Date now) const;
    double lastMonth(Date now) const;
    double onDay(std::chrono::local_days day, Date now) const;

    struct Day {
        std::chrono::local_days day;
        double seconds = 0;
    };
    /// The oldest first, ending today.
    std::array<Day, 7> lastSevenDays(Date now) const;

    struct Share {
        RowKey key = 0; // 0 for time on none
        double seconds = 0;
    };
    /// The most time first; at most that many.
    std::vector<Share> byProject(Date now, std::size_t most) const;
    std::vector<Share> byTask(Date now, std::size_t most) const;
    std::size_t projectCount() const { return m_projects.size(); }
    std::size_t taskCount() const { return m_tasks.size(); }

  private:
    using Time = std::chrono::microseconds;
    struct Bucket {
        Time time{0}; // of entries that have ended
        std::size_t entries = 0;
    };
    using Buckets = std::unordered_map<RowKey, Bucket>;

    void count(const TrackedTime& entry, int sign);
    std::chrono::local_days dayOf(Date date) const;
    /// Of the entries that began on these days, the last one left out.
    double between(std::chrono::local_days first, std::chrono::local_days end, Date now) const;
    std::vector<Share> shares(const Buckets& buckets, RowKey TrackedTime::* member, Date now, std::size_t most) const;

    const Calendar& m_calendar;
    std::size_t m_entries = 0;
    Time m_total{0};
    std::map<std::chrono::local_days, Bucket> m_days;
    Buckets m_projects;
    Buckets m_tasks;
    std::vector<TrackedTime> m_running;
};

/// A card of a dashboard.
struct TimeFigure {
    std::string_view label;
    std::string value;
    std::string detail{};

    friend bool operator==(const TimeFigure&, const TimeFigure&) = default;
};
/// "Total Tracked" with the number of entries below it, then "Today", "This Week", "This Month" and "Last Month".
std::vector<TimeFigure> timeFigures(const TimeEntryStats& stats, Date now);
/// "1 entry", "12 entries".
std::string entryCountLabel(std::size_t count);

} // namespace quillorn
