#include "Views/TodaySummaryView.h"

#include "Models/Client.h"
#include "Models/Formatters.h"
#include "Models/Project.h"
#include "Platform/Calendar.h"
#include "Platform/Clock.h"
#include "Platform/Text.h"
#include "Views/ActivityItem.h"
#include "Views/TimeEntryStats.h"

#include <cstdint>
#include <fmt/core.h>

namespace quillorn {

namespace {

/// Rows of which `column` lies in the day.
ObservedCondition onDay(std::string_view column, Date date, const Calendar& calendar) {
    const auto value = [](Date each) { return SQLValue(std::int64_t{each.time_since_epoch().count()}); };
    return {.where = fmt::format("{0} >= ? AND {0} < ?", column),
            .values = {value(calendar.startOfDay(date)), value(calendar.startOfDay(calendar.addDays(date, 1)))}};
}

ObservedCondition followingNames(ObservedCondition condition) {
    condition.dependencies = {
        {&Project::entityType(), "project IN changed"},
        {&Client::entityType(), "project IN (SELECT Project.key FROM Project WHERE client IN changed)"}};
    return condition;
}

bool completedLater(const ProjectTask& a, const ProjectTask& b) {
    return a.completedAt() > b.completedAt();
}
bool addedLater(const Note& a, const Note& b) {
    return a.createdAt() > b.createdAt();
}

bool isComment(const Note& note) {
    return note.task() != nullptr && note.title().empty();
}

std::string timeOf(Date date, const Calendar& calendar) {
    return smartDate(date, date, calendar);
}

std::string_view firstLine(std::string_view text) {
    text = trimWhitespaceAndNewlines(text);
    return trimBlanks(text.substr(0, text.find_first_of("\r\n")));
}

} // namespace

ObservedCondition completedOnDay(Date date, const Calendar& calendar) {
    return followingNames(onDay("completedAt", date, calendar));
}
ObservedCondition notesOfDay(Date date, const Calendar& calendar) {
    ObservedCondition condition = followingNames(onDay("createdAt", date, calendar));
    condition.dependencies.push_back({&ProjectTask::entityType(), "task IN changed"});
    return condition;
}
ObservedCondition entriesOfDay(Date date, const Calendar& calendar) {
    return onDay("startTime", date, calendar);
}

std::array<SummaryTile, 3> summaryTiles(const DaySummary& summary) {
    return {{{"Completed", fmt::format("{}", summary.completed), summary.completed == 1 ? "task" : "tasks"},
             {"Notes & Comments", fmt::format("{}", summary.notes), "added"},
             {"Time Tracked", summary.trackedSeconds > 0 ? shortForm(summary.trackedSeconds) : "0m",
              entryCountLabel(summary.entries)}}};
}

TodaySummaryView::TaskRow TodaySummaryView::rowOf(const ProjectTask& task, const Calendar& calendar) {
    return {task.id(), task.title(), projectPath(task.project()).value_or(""),
            timeOf(task.completedAt().value_or(task.updatedAt()), calendar)};
}

TodaySummaryView::NoteRow TodaySummaryView::rowOf(const Note& note, const Calendar& calendar) {
    const std::string time = timeOf(note.createdAt(), calendar);
    if (isComment(note))
        return {note.id(), "Comment on " + note.task()->title(), std::string(firstLine(note.content())), time, true};
    return {note.id(), note.displayTitle(), note.listPreview(), time};
}

TodaySummaryView::TodaySummaryView(MainContext& main, const Clock& clock, const Calendar& calendar)
    : m_clock(clock),
      m_calendar(calendar),
      m_day(calendar.startOfDay(clock.now())),
      m_completed(main, completedOnDay(m_day, calendar), completedLater),
      m_notes(main, notesOfDay(m_day, calendar), addedLater),
      m_entries(main, entriesOfDay(m_day, calendar)) {
    const auto note = [this](const RowSteps&) { m_isBehind = true; };
    m_steps = {m_completed.observe(note), m_notes.observe(note), m_entries.observe(note)};
    // Once, when all three have followed.
    m_changes = main.observe([this](const ChangeSet&) {
        if (m_isBehind)
            show();
    });
    show();
}

void TodaySummaryView::update() {
    const Date today = m_calendar.startOfDay(m_clock.now());
    if (today != m_day) {
        m_day = today;
        m_completed.assign(completedOnDay(m_day, m_calendar), completedLater);
        m_notes.assign(notesOfDay(m_day, m_calendar), addedLater);
        m_entries.assign(entriesOfDay(m_day, m_calendar));
    }
    show();
}

void TodaySummaryView::show() {
    m_isBehind = false;
    m_summary = {m_completed.size(), m_notes.size(), m_entries.size()};
    m_hasRunning = false;
    for (std::size_t place = 0; place < m_entries.size(); ++place) {
        m_summary.trackedSeconds += m_entries[place].duration(m_clock.now());
        m_hasRunning |= m_entries[place].isRunning();
    }
    std::vector<TaskRow> completed;
    completed.reserve(m_completed.size());
    for (std::size_t place = 0; place < m_completed.size(); ++place)
        completed.push_back(rowOf(m_completed[place], m_calendar));
    m_completedRows.assign(std::move(completed));
    std::vector<NoteRow> notes;
    notes.reserve(m_notes.size());
    for (std::size_t place = 0; place < m_notes.size(); ++place)
        notes.push_back(rowOf(m_notes[place], m_calendar));
    m_noteRows.assign(std::move(notes));
    m_observers.tell();
}

} // namespace quillorn
