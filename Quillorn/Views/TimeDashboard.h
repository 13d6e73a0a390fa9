#pragma once

#include "Models/TaskActions.h"
#include "Platform/Observers.h"
#include "Store/ChangeSet.h"
#include "Store/Statement.h"
#include "Views/ObservableList.h"
#include "Views/TimeEntryStats.h"

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quillorn {

class Clock;
class MainContext;

/// Whose time a dashboard shows.
struct TimeScope {
    enum class Kind { all, client, project, task };

    Kind kind = Kind::all;
    /// Of the client, project or task.
    UUID id{};
};

/// The time of everything, of a client, of a project or of a task: sums, shares and the last entries. It keeps what
/// the sums need of each entry, and looks only at those that have changed. Belongs to the main thread.
class TimeDashboard {
  public:
    static constexpr std::string_view sevenDaysTitle = "Last 7 Days";
    static constexpr std::string_view byProjectTitle = "By Project";
    static constexpr std::string_view byTaskTitle = "By Task";
    static constexpr std::string_view recentTitle = "Recent Entries";
    static constexpr std::string_view editHelp = "Click to edit";
    static constexpr std::string_view deleteButton = "Delete";
    static constexpr std::string_view cancelButton = "Cancel";
    static constexpr std::size_t mostProjects = 50;
    static constexpr std::size_t mostTasks = 20;
    static constexpr std::size_t mostRecent = 50;

    struct Bar {
        /// "Thu".
        std::string label;
        std::string value;
        double seconds = 0;

        friend bool operator==(const Bar&, const Bar&) = default;
    };
    /// A project or a task, and its part of the time; the nil identifier for time on none.
    struct ShareRow {
        UUID id{};
        std::string name{};
        std::string color{};
        std::string value{};
        /// Of the longest row, from 0 to 1.
        double part = 0;

        friend bool operator==(const ShareRow&, const ShareRow&) = default;
    };
    /// The heading of a day ("Thursday", its date and its sum), or an entry.
    struct RecentRow {
        std::string id;
        bool isHeading = false;
        std::string title{};
        /// The project of an entry.
        std::string subtitle{};
        std::string color{};
        /// "9:00 AM – 10:30 AM", or "Recording...".
        std::string times{};
        /// A clock, which runs for an entry that does.
        std::string duration{};
        std::string notes{};
        bool isRunning = false;
        /// The entry that a click edits.
        UUID entry{};

        friend bool operator==(const RecentRow&, const RecentRow&) = default;
    };

    TimeDashboard(MainContext& main, const Clock& clock, const Calendar& calendar, TimeScope scope = {});
    ~TimeDashboard() = default;
    TimeDashboard(const TimeDashboard&) = delete;
    TimeDashboard& operator=(const TimeDashboard&) = delete;

    /// Told when anything has changed; the list of recent entries tells for itself too.
    [[nodiscard]] Observation observe(std::function<void()> handler) { return m_observers.add(std::move(handler)); }
    /// The present moment has moved on: running entries have grown, or it is another day.
    void update();

    const TimeEntryStats& stats() const { return m_stats; }
    const std::vector<TimeFigure>& figures() const { return m_figures; }
    const std::array<Bar, 7>& lastSevenDays() const { return m_bars; }
    /// Empty: then TimeEntryStats::noProjectData stands there.
    const std::vector<ShareRow>& byProject() const { return m_byProject; }
    const std::vector<ShareRow>& byTask() const { return m_byTask; }
    /// In day groups, the latest first.
    ObservableList<RecentRow>& recent() { return m_recent; }
    const ObservableList<RecentRow>& recent() const { return m_recent; }

    /// What to ask before remove(); absent for an entry that is gone.
    std::optional<Confirmation> confirmationFor(const UUID& entry) const;
    void remove(const UUID& entry);

  private:
    using Places = std::unordered_map<RowKey, RowKey>;

    void follow(const ChangeSet& changes);
    void load();
    void readScope();
    /// Takes up the entries of the scope among those that `condition` restricts by one value.
    void read(const std::string& condition, const SQLValue& value);
    bool isInScope(RowKey task, RowKey project, RowKey projectOfTask) const;
    /// Where these rows belong to now: tasks in a project, or projects to a client. Returns those that have moved.
    std::vector<RowKey> readPlaces(Places& places, const char* table, const char* column,
                                   const std::vector<RowKey>& keys) const;
    void forget(const std::vector<RowKey>& keys);
    void show();
    std::vector<ShareRow> shareRows(const std::vector<TimeEntryStats::Share>& shares, const char* sql,
                                    std::string_view nameOfNone) const;
    std::vector<RecentRow> recentRows() const;
    RecentRow headingOf(const TimeEntry& first) const;
    RecentRow rowOf(const TimeEntry& entry) const;

    MainContext& m_main;
    const Clock& m_clock;
    const Calendar& m_calendar;
    TimeScope m_scope;
    RowKey m_scopeKey = 0;
    bool m_isStale = true; // what there is could not be read
    Date m_day{};          // on which it was shown
    TimeEntryStats m_stats;
    std::unordered_map<RowKey, TrackedTime> m_entries;
    std::vector<std::pair<Date, RowKey>> m_byStart; // the earliest first
    Places m_projects;                              // of tasks
    Places m_clients;                               // of projects
    std::vector<TimeFigure> m_figures;
    std::array<Bar, 7> m_bars;
    std::vector<ShareRow> m_byProject;
    std::vector<ShareRow> m_byTask;
    ObservableList<RecentRow> m_recent;
    Observers<> m_observers;
    Observation m_changes;
};

} // namespace quillorn
