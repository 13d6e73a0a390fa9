#include "Views/TaskListView.h"

#include "Models/Project.h"
#include "Models/Tag.h"
#include "Models/TimeEntry.h"
#include "Platform/Clock.h"
#include "Platform/SettingsStore.h"
#include "Services/DayChangeObserver.h"
#include "Services/TimerService.h"

#include <algorithm>
#include <utility>

namespace quillorn {

namespace {

/// A task stands as deep as all those above it say.
constexpr const char* descendantsOfChanged = "key IN (WITH RECURSIVE below(task) AS (SELECT key FROM changed UNION "
                                             "SELECT t.key FROM ProjectTask t JOIN below ON "
                                             "t.parentTask = below.task) SELECT task FROM below)";

} // namespace

TaskListView::TaskListView(const ViewEnvironment& environment, SceneStorage& scene, TaskFilter filter)
    : m_environment(environment),
      m_scene(scene),
      m_filter(filter),
      m_edits(environment),
      m_moment(TaskMoment::at(environment.clock.now(), environment.calendar)),
      m_options(readOptions()),
      m_search("", environment.text),
      m_members(environment.main, condition()) {
    if (m_filter.kind == TaskFilter::Kind::upcoming) {
        const Query forecast = forecastQuery(m_moment, environment.calendar);
        m_forecast.emplace(environment.main, ObservedCondition{.where = forecast.where, .values = forecast.values});
        m_observations.push_back(m_forecast->observe([this](const RowSteps&) { m_observers.tell(); }));
    }
    if (m_filter.kind == TaskFilter::Kind::all) {
        m_completed.emplace(environment.main, ProjectTask::entityType(),
                            ObservedCondition{.where = "completedAt IS NOT NULL"});
        m_observations.push_back(m_completed->observe([this](std::size_t) { m_observers.tell(); }));
    }
    m_observations.push_back(m_members.observe([this](const RowSteps& told) { follow(told); }));
    m_observations.push_back(environment.days.observe([this] { momentPassed(); }));
    m_observations.push_back(environment.timer.observe([this] { tick(); }));
    m_observations.push_back(environment.settings.observe(environment.queue, [this] { settingsChanged(); }));
    rebuild();
}

TaskListView::~TaskListView() {
    if (m_timer)
        m_environment.queue.cancel(*m_timer);
}

TaskListView::Options TaskListView::readOptions() const {
    return {
        .sortOrder = sortOrderFromRaw(m_scene.text(setting("taskListSortOrder"))).value_or(SortOrder::dueDate),
        .groupBy = groupByFromRaw(m_scene.text(setting("taskGroupBy"))).value_or(defaultGroupBy(m_filter)),
        .showsCompleted = Settings(m_environment.settings).boolean(setting("showCompletedTasks")),
        .isDoneOpen = m_scene.boolean(setting("doneSectionExpanded")),
        .open = m_scene.ids(setting("expandedTaskIDs")),
    };
}

/// Rows show the names of projects and tags, tracked time, and how many subtasks are done.
ObservedCondition TaskListView::condition() const {
    const Query query = taskQuery(m_filter, m_moment, m_options.showsCompleted);
    return {
        .where = query.where,
        .values = query.values,
        .dependencies = {{&Project::entityType(), "project IN changed"},
                         {&Tag::entityType(), "key IN (SELECT task FROM ProjectTask_Tag WHERE tag IN changed)"},
                         {&TimeEntry::entityType(), "key IN (SELECT task FROM TimeEntry WHERE key IN changed)"},
                         {&ProjectTask::entityType(),
                          "key IN (SELECT parentTask FROM ProjectTask WHERE key IN changed)"},
                         {&ProjectTask::entityType(), descendantsOfChanged}},
    };
}

void TaskListView::reload() {
    m_members.assign(condition()); // told as replaced
}

void TaskListView::setSearchText(std::string text) {
    if (text == m_searchText)
        return;
    m_searchText = std::move(text);
    const TaskTextSearch former = std::exchange(m_search, TaskTextSearch(m_searchText, m_environment.text));
    narrow(&former);
}

const std::vector<TaskMeeting>& TaskListView::meetings() const {
    if (!m_meetings) {
        std::vector<ProjectTask*> tasks;
        tasks.reserve(m_sorted.size());
        for (const TaskListItem* item : m_sorted)
            tasks.push_back(item->task.get());
        m_meetings = meetingsOf(tasks);
    }
    return *m_meetings;
}

void TaskListView::setMeeting(std::string key) {
    if (key == m_meeting)
        return;
    m_meeting = std::move(key);
    narrow();
}

std::string TaskListView::noMeetings(std::string_view typed) {
    return "No meetings match “" + std::string(typed) + "”";
}

std::string TaskListView::meetingTitle() const {
    if (m_meeting.empty())
        return "All Meetings";
    const auto found = std::ranges::find(meetings(), m_meeting, &TaskMeeting::key);
    return found != meetings().end() ? found->title : m_meeting;
}

void TaskListView::clearFilters() {
    m_meeting.clear();
    m_searchText.clear();
    m_search = TaskTextSearch("", m_environment.text);
    narrow();
}

void TaskListView::reopen() {
    m_selection.clear();
    if (!m_searchText.empty() || !m_meeting.empty())
        clearFilters();
    Options options = readOptions();
    if (options == m_options)
        return;
    const bool hasOthers = options.showsCompleted != m_options.showsCompleted;
    m_options = std::move(options);
    hasOthers ? reload() : rebuild();
}

void TaskListView::setSortOrder(SortOrder order) {
    m_scene.set(setting("taskListSortOrder"), Json(rawValue(order)));
    if (std::exchange(m_options.sortOrder, order) != order)
        rebuild();
}

void TaskListView::setGroupBy(GroupBy grouping) {
    m_scene.set(setting("taskGroupBy"), Json(rawValue(grouping)));
    if (std::exchange(m_options.groupBy, grouping) != grouping)
        rebuild();
}

void TaskListView::setShowsCompleted(bool shows) {
    Settings(m_environment.settings).set(setting("showCompletedTasks"), shows);
    settingsChanged();
}

void TaskListView::settingsChanged() {
    const bool shows = Settings(m_environment.settings).boolean(setting("showCompletedTasks"));
    if (std::exchange(m_options.showsCompleted, shows) != shows)
        reload();
}

void TaskListView::toggleDoneSection() {
    m_options.isDoneOpen = !m_options.isDoneOpen;
    m_scene.set(setting("doneSectionExpanded"), Json(m_options.isDoneOpen));
    layOut();
    m_observers.tell();
}

void TaskListView::toggleDisclosure(const UUID& task) {
    if (m_options.open.erase(task) == 0)
        m_options.open.insert(task);
    m_scene.set(setting("expandedTaskIDs"), m_options.open);
    for (TaskListItem* item : m_sorted) {
        item->isOpen = item->hasSubtasks && m_options.open.contains(item->task->id());
        fillGuests(*item);
    }
    layOut();
}

std::optional<EmptyState> TaskListView::emptyState() const {
    if (!m_rows.isEmpty())
        return std::nullopt;
    std::string tagName;
    if (m_filter.kind == TaskFilter::Kind::tag)
        if (const Tag* tag = m_environment.main.context().find<Tag>(m_filter.id))
            tagName = tag->name();
    return emptyTaskList(m_filter, tagName, {.isSearching = !m_search.isBlank(), .hasMeeting = !m_meeting.empty()});
}

std::optional<SmartListDashboardHeader> TaskListView::dashboard() const {
    if (m_filter.kind == TaskFilter::Kind::today)
        return todayHeader(m_tally);
    if (m_filter.kind == TaskFilter::Kind::all)
        return allTasksHeader(m_tally, m_completed->value());
    if (m_filter.kind != TaskFilter::Kind::upcoming)
        return std::nullopt;
    std::vector<const ProjectTask*> open;
    open.reserve(m_forecast->size());
    for (std::size_t place = 0; place < m_forecast->size(); ++place)
        open.push_back(&(*m_forecast)[place]);
    return upcomingHeader(m_tally, open, m_moment, m_environment.calendar);
}

TaskIds TaskListView::selection() const {
    TaskIds present;
    for (const ProjectTask* task : m_edits.find(m_selection))
        present.push_back(task->id());
    return present;
}

void TaskListView::select(TaskIds ids) {
    m_selection = std::move(ids);
    m_observers.tell();
}

TaskIds TaskListView::targets(const UUID& task) const {
    TaskIds selected = selection();
    return std::ranges::find(selected, task) != selected.end() ? selected : TaskIds{task};
}

} // namespace quillorn
