#pragma once

#include "Models/Note.h"
#include "Models/ProjectTask.h"
#include "Models/TimeEntry.h"
#include "Store/ObservedQuery.h"
#include "Views/ObservableList.h"

#include <array>
#include <functional>
#include <string>
#include <string_view>

namespace quillorn {

class Calendar;
class Clock;

/// What was done on one day.
struct DaySummary {
    std::size_t completed = 0;
    std::size_t notes = 0;
    std::size_t entries = 0;
    double trackedSeconds = 0;

    bool isEmpty() const { return completed == 0 && notes == 0 && entries == 0; }
};

/// A card: a figure and what it counts.
struct SummaryTile {
    std::string_view label;
    std::string value;
    std::string detail;

    friend bool operator==(const SummaryTile&, const SummaryTile&) = default;
};
std::array<SummaryTile, 3> summaryTiles(const DaySummary& summary);

// Which records belong to the day on which `date` lies.
ObservedCondition completedOnDay(Date date, const Calendar& calendar);
ObservedCondition notesOfDay(Date date, const Calendar& calendar);
ObservedCondition entriesOfDay(Date date, const Calendar& calendar);

/// What today has brought. Belongs to the main thread.
class TodaySummaryView {
  public:
    static constexpr std::string_view heading = "Here's what you've accomplished today";
    static constexpr std::string_view completedTitle = "Completed Today";
    static constexpr std::string_view notesTitle = "Notes & Comments Added";
    static constexpr std::string_view emptyIcon = "sunrise";
    static constexpr std::string_view emptyTitle = "Nothing yet today";
    static constexpr std::string_view emptyMessage =
        "Completed tasks, notes, and tracked time will show up here as your day progresses.";

    struct TaskRow {
        UUID id;
        std::string title;
        /// "Client / Project"; empty for no project.
        std::string subtitle;
        std::string time;

        friend bool operator==(const TaskRow&, const TaskRow&) = default;
    };
    struct NoteRow {
        UUID id;
        std::string title;
        std::string subtitle;
        std::string time;
        bool isComment = false;

        friend bool operator==(const NoteRow&, const NoteRow&) = default;
    };
    static TaskRow rowOf(const ProjectTask& task, const Calendar& calendar);
    static NoteRow rowOf(const Note& note, const Calendar& calendar);

    TodaySummaryView(MainContext& main, const Clock& clock, const Calendar& calendar);
    ~TodaySummaryView() = default;
    TodaySummaryView(const TodaySummaryView&) = delete;
    TodaySummaryView& operator=(const TodaySummaryView&) = delete;

    /// Told when the figures have changed; lists tell for themselves.
    [[nodiscard]] Observation observe(std::function<void()> handler) { return m_observers.add(std::move(handler)); }
    /// The present moment has moved on: an entry that runs has grown, or it is another day.
    void update();

    const DaySummary& summary() const { return m_summary; }
    std::array<SummaryTile, 3> tiles() const { return summaryTiles(m_summary); }
    bool isEmpty() const { return m_summary.isEmpty(); }
    /// Whether an entry of today still grows.
    bool hasRunning() const { return m_hasRunning; }
    /// The latest first.
    ObservableList<TaskRow>& completed() { return m_completedRows; }
    ObservableList<NoteRow>& notes() { return m_noteRows; }

  private:
    void show();

    const Clock& m_clock;
    const Calendar& m_calendar;
    Date m_day;
    ObservedQuery<ProjectTask> m_completed;
    ObservedQuery<Note> m_notes;
    ObservedQuery<TimeEntry> m_entries;
    DaySummary m_summary;
    ObservableList<TaskRow> m_completedRows;
    ObservableList<NoteRow> m_noteRows;
    Observers<> m_observers;
    bool m_hasRunning = false;
    bool m_isBehind = false; // what the queries show
    std::array<Observation, 3> m_steps;
    Observation m_changes;
};

} // namespace quillorn
