#include "Views/TimeEntryFormSheet.h"

#include "Models/Formatters.h"
#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/Sorting.h"
#include "Platform/Calendar.h"
#include "Platform/Clock.h"
#include "Services/TimerService.h"
#include "Store/MainContext.h"

#include <algorithm>
#include <utility>

namespace quillorn {

using std::chrono::days;
using std::chrono::local_days;
using std::chrono::seconds;

namespace {

std::optional<std::string> textOrNone(const std::string& text) {
    return text.empty() ? std::nullopt : std::optional(text);
}

} // namespace

TimeEntryFormSheet::TimeEntryFormSheet(Environment environment, const Suggestion& suggestion)
    : m_environment(environment),
      m_project(suggestion.project) {
    const Date now = m_environment.clock.now();
    takeTimes(now - std::chrono::hours{1}, now);
    if (suggestion.task)
        setTask(suggestion.task);
}

TimeEntryFormSheet::TimeEntryFormSheet(Environment environment, const TimeEntry& entry)
    : m_environment(environment),
      m_entry(entry.id()),
      m_isRunning(entry.isRunning()),
      m_wasUnassigned(entry.task() == nullptr && entry.project() == nullptr),
      m_title(entry.title().value_or("")),
      m_notes(entry.notes().value_or("")),
      m_givenStart(entry.startTime()),
      m_givenEnd(entry.endTime()) {
    takeTimes(entry.startTime(), entry.endTime().value_or(m_environment.clock.now()));
    if (entry.task() != nullptr)
        setTask(entry.task()->id());
    else if (entry.project() != nullptr)
        m_project = entry.project()->id();
}

void TimeEntryFormSheet::takeTimes(Date start, Date end) {
    m_date = local_days{m_environment.calendar.day(start)};
    m_start = timeOfDay(start, m_environment.calendar);
    m_end = timeOfDay(end, m_environment.calendar);
}

TimeEntry* TimeEntryFormSheet::entry() const {
    return m_entry ? m_environment.main.context().find<TimeEntry>(*m_entry) : nullptr;
}

std::string_view TimeEntryFormSheet::windowTitle() const {
    if (isNew())
        return "Log Time";
    return m_isRunning ? "Edit Running Timer" : "Edit Time Entry";
}

std::vector<TimeEntryFormSheet::Choice> TimeEntryFormSheet::projects() const {
    auto all = m_environment.main.context().fetch<Project>();
    std::erase_if(all, [&](const Project* each) { return each->isHidden() && each->id() != m_project; });
    sortByName(all, m_environment.text);
    std::vector<Choice> choices;
    choices.reserve(all.size());
    for (const Project* each : all)
        choices.push_back({each->id(), each->name()});
    return choices;
}

std::vector<TimeEntryFormSheet::Choice> TimeEntryFormSheet::tasks() const {
    const Query query =
        m_project ? Query{.where = "project IN (SELECT key FROM Project WHERE id = ?)", .values = {*m_project}}
                  : Query{.where = "project IS NULL"};
    std::vector<Choice> choices;
    for (const ProjectTask* each : m_environment.main.context().fetch<ProjectTask>(query))
        if (!each->isCompleted() || each->id() == m_task)
            choices.push_back({each->id(), each->title()});
    std::ranges::stable_sort(
        choices, [&](const Choice& a, const Choice& b) { return m_environment.text.compare(a.name, b.name) < 0; });
    return choices;
}

void TimeEntryFormSheet::setProject(std::optional<UUID> project) {
    if (m_project == project)
        return;
    m_project = project;
    m_task.reset();
    m_observers.tell();
}

void TimeEntryFormSheet::setTask(std::optional<UUID> task) {
    m_task = task;
    const ProjectTask* chosen = task ? m_environment.main.context().find<ProjectTask>(*task) : nullptr;
    if (chosen != nullptr)
        m_project = chosen->project() != nullptr ? std::optional(chosen->project()->id()) : std::nullopt;
    m_observers.tell();
}

void TimeEntryFormSheet::setTitle(std::string title) {
    m_title = std::move(title);
    m_observers.tell();
}

void TimeEntryFormSheet::setNotes(std::string notes) {
    m_notes = std::move(notes);
    m_observers.tell();
}

void TimeEntryFormSheet::setDate(local_days date) {
    m_date = date;
    touchTimes();
}

void TimeEntryFormSheet::setStartTime(seconds time) {
    m_start = time;
    touchTimes();
}

void TimeEntryFormSheet::setEndTime(seconds time) {
    m_end = time;
    touchTimes();
}

void TimeEntryFormSheet::chooseQuick(int minutes) {
    setEndTime(timeOfDay(start() + std::chrono::minutes{minutes}, m_environment.calendar));
}

void TimeEntryFormSheet::touchTimes() {
    m_givenStart.reset();
    m_givenEnd.reset();
    m_observers.tell();
}

Date TimeEntryFormSheet::instant(seconds time) const {
    return m_environment.calendar.instant(m_date + time);
}

Date TimeEntryFormSheet::start() const {
    return m_givenStart.value_or(instant(m_start));
}

Date TimeEntryFormSheet::end() const {
    if (m_isRunning)
        return m_environment.clock.now();
    return m_givenEnd ? *m_givenEnd : effectiveEnd(start(), instant(m_end), m_environment.calendar);
}

DurationLine TimeEntryFormSheet::duration() const {
    if (m_isRunning)
        return {clockForm(secondsBetween(start(), end()))};
    return durationLine(start(), end(), m_environment.calendar);
}

std::optional<std::string> TimeEntryFormSheet::overlap() const {
    if (m_isRunning || end() <= start())
        return std::nullopt;
    return overlapWarning(
        overlappingEntries(m_environment.main.context(), start(), end(), m_environment.clock.now(), m_entry),
        m_environment.calendar);
}

std::optional<std::string> TimeEntryFormSheet::fault() const {
    if (m_entry && entry() == nullptr)
        return "the time entry has been deleted";
    if (!m_project && !m_task && !m_wasUnassigned)
        return "a project or a task must be chosen";
    if (m_isRunning && start() > m_environment.clock.now())
        return "a running timer can't start in the future";
    if (!m_isRunning && start() == end())
        return std::string(DurationLine::mustDiffer);
    return std::nullopt;
}

bool TimeEntryFormSheet::save() {
    if (!canSave())
        return false;
    ModelContext& context = m_environment.main.context();
    TimeEntry* entry = this->entry();
    if (entry == nullptr)
        entry = &context.insert<TimeEntry>(TimeEntry::Arguments{.startTime = start()});
    ProjectTask* task = m_task ? context.find<ProjectTask>(*m_task) : nullptr;
    // Time on a task belongs to its project by the task.
    Project* project = task == nullptr && m_project ? context.find<Project>(*m_project) : nullptr;
    if (task != entry->task() || (task == nullptr && project != entry->project())) {
        entry->setTask(task);
        entry->setProject(project);
    }
    entry->setTitle(textOrNone(m_title));
    entry->setNotes(textOrNone(m_notes));
    if (m_isRunning && m_environment.timer.activeEntry(context) == entry)
        m_environment.timer.adjustStart(start(), context);
    entry->setStartTime(start());
    if (!m_isRunning)
        entry->setEndTime(end());
    m_environment.main.save();
    m_entry = entry->id();
    return true;
}

} // namespace quillorn
