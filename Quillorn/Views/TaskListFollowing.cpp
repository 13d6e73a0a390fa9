#include "Models/ProjectTask.h"
#include "Platform/Clock.h"
#include "Views/TaskListView.h"

#include <algorithm>
#include <utility>

namespace quillorn {

namespace {

/// Tasks of an upcoming list come into reach by time alone.
constexpr std::chrono::minutes upcomingStep{1};

/// Whether subtasks belong to their parents in the list: where it is told by a date or a tag which tasks are in, none
/// is out of sight because its parent is closed.
bool nests(const TaskFilter& filter) {
    using enum TaskFilter::Kind;
    return filter.kind == all || filter.kind == project || filter.kind == client;
}

} // namespace

void TaskListView::follow(const RowSteps& told) {
    if (told.isReplaced)
        return rebuild();
    std::vector<ProjectTask*> changed;
    bool isElsewhere = false;
    for (const RowStep& step : told.steps) {
        if (step.kind == RowStep::Kind::removed) {
            drop(step.key);
            isElsewhere = true;
        } else if (auto* task = m_environment.main.context().find<ProjectTask>(step.key);
                   task != nullptr && std::ranges::find(changed, task) == changed.end()) {
            changed.push_back(task);
        }
    }
    isElsewhere |= take(changed);
    if (isElsewhere)
        layOut();
    else
        for (const ProjectTask* task : changed)
            changeRows(*m_items.at(task->key()));
    armTimer();
    m_observers.tell();
}

void TaskListView::drop(RowKey key) {
    const auto found = m_items.find(key);
    if (found == m_items.end())
        return;
    m_tally.add(found->second->share, -1);
    std::erase(m_sorted, found->second.get());
    m_items.erase(found);
    m_running.erase(key);
    m_meetings.reset();
}

void TaskListView::rebuild() {
    m_items.clear();
    m_sorted.clear();
    m_sections.clear();
    m_running.clear();
    m_tally = {};
    m_meetings.reset();
    m_nextDue.reset();
    m_moment = TaskMoment::at(m_environment.clock.now(), m_environment.calendar);
    std::vector<ProjectTask*> tasks;
    tasks.reserve(m_members.size());
    for (std::size_t place = 0; place < m_members.size(); ++place)
        tasks.push_back(&m_members[place]);
    sortTasks(tasks, m_options.sortOrder, m_environment.text);
    TaskRowMaker maker(m_environment.main.context(), tasks, m_moment, m_environment.calendar);
    m_items.reserve(tasks.size());
    m_sorted.reserve(tasks.size());
    for (ProjectTask* task : tasks) {
        auto item = std::make_unique<TaskListItem>();
        fill(*item, *task, maker);
        m_tally.add(item->share);
        m_sorted.push_back(item.get());
        m_items.emplace(task->key(), std::move(item));
    }
    for (TaskListItem* item : m_sorted)
        fillGuests(*item); // when all members are known
    layOut();
    armTimer();
    m_observers.tell();
}

/// Whether rows come, go or move.
bool TaskListView::take(const std::vector<ProjectTask*>& changed) {
    if (changed.empty())
        return false;
    TaskRowMaker maker(m_environment.main.context(), changed, m_moment, m_environment.calendar);
    bool isElsewhere = false;
    for (ProjectTask* task : changed)
        isElsewhere |= take(*task, maker);
    return isElsewhere;
}

bool TaskListView::take(ProjectTask& task, TaskRowMaker& maker) {
    auto& item = m_items[task.key()];
    const bool isNew = item == nullptr;
    if (isNew)
        item = std::make_unique<TaskListItem>();
    else
        m_tally.add(item->share, -1);
    const bool matched = item->matches;
    const RowKey parent = item->parent;
    const bool hadGuests = !item->guests.empty();
    const std::vector<std::uint32_t> sections = std::exchange(item->sections, {});
    const std::uint32_t revision = m_sections.revision();
    fill(*item, task, maker);
    fillGuests(*item);
    m_tally.add(item->share);
    m_meetings.reset();
    const bool isPlaced = place(*item, isNew);
    return isPlaced || parent != item->parent || matched != item->matches || hadGuests || !item->guests.empty() ||
           sections != item->sections || revision != m_sections.revision();
}

/// Puts the item where the order wants it; false when it is there.
bool TaskListView::place(TaskListItem& item, bool isNew) {
    if (!isNew) {
        const auto at = std::ranges::find(m_sorted, &item);
        const bool fits = (at == m_sorted.begin() || !isEarlier(item, **std::prev(at))) &&
                          (std::next(at) == m_sorted.end() || !isEarlier(**std::next(at), item));
        if (fits)
            return false;
        m_sorted.erase(at);
    }
    const auto earlier = [this](const TaskListItem* a, const TaskListItem* b) { return isEarlier(*a, *b); };
    m_sorted.insert(std::ranges::lower_bound(m_sorted, &item, earlier), &item);
    return true;
}

bool TaskListView::isEarlier(const TaskListItem& a, const TaskListItem& b) const {
    const ProjectTask& first = *a.task;
    const ProjectTask& second = *b.task;
    if (isBefore(first, second, m_options.sortOrder, m_environment.text))
        return true;
    return !isBefore(second, first, m_options.sortOrder, m_environment.text) && first.key() < second.key();
}

void TaskListView::fill(TaskListItem& item, ProjectTask& task, TaskRowMaker& maker) {
    const TaskTotals totals = maker.totals(task);
    item.task = Held<ProjectTask>(task);
    item.words = maker.words(task);
    item.parent = task.parentKey();
    item.depth = static_cast<std::uint32_t>(totals.depth);
    item.hasSubtasks = totals.subtaskCount > (m_options.showsCompleted ? 0 : totals.completedSubtaskCount);
    item.isOpen = item.hasSubtasks && m_options.open.contains(task.id());
    item.searched.reset();
    item.matches = isLetThrough(item);
    item.share = TaskTally::shareOf(task, m_moment);
    item.sections.clear();
    for (const SectionHead& head : sectionsOf(task, m_options.groupBy, m_moment))
        item.sections.push_back(m_sections.number(head));
    if (totals.isRunning)
        m_running.insert(task.key());
    else
        m_running.erase(task.key());
    if (task.dueDate() && *task.dueDate() >= m_moment.now && (!m_nextDue || *task.dueDate() < *m_nextDue))
        m_nextDue = task.dueDate();
}

/// Subtasks that the list has no rows of their own for.
void TaskListView::fillGuests(TaskListItem& item) {
    item.guests.clear();
    if (!item.isOpen)
        return;
    std::vector<ProjectTask*> tasks;
    for (ProjectTask* task : item.task->subtasks())
        if (!m_items.contains(task->key()) && (m_options.showsCompleted || !task->isCompleted()) &&
            isOfMeeting(*task) && m_search.matches(*task) && task->depth() > item.depth)
            tasks.push_back(task);
    sortTasks(tasks, m_options.sortOrder, m_environment.text);
    TaskRowMaker maker(m_environment.main.context(), tasks, m_moment, m_environment.calendar);
    for (ProjectTask* task : tasks) {
        auto& guest = item.guests.emplace_back(std::make_unique<TaskListItem>());
        fill(*guest, *task, maker);
        fillGuests(*guest);
    }
}

bool TaskListView::isOfMeeting(const ProjectTask& task) const {
    return m_meeting.empty() || meetingKey(task) == m_meeting;
}

bool TaskListView::isLetThrough(TaskListItem& item) const {
    if (!isOfMeeting(*item.task))
        return false;
    if (m_search.isBlank())
        return true;
    if (!item.searched)
        item.searched = m_search.searched(*item.task);
    return m_search.isInSearched(*item.searched);
}

/// `former` is the search before this one, where nothing but the search has changed.
void TaskListView::narrow(const TaskTextSearch* former) {
    const bool noneComes = former != nullptr && m_search.isWithin(*former);
    const bool noneGoes = former != nullptr && former->isWithin(m_search);
    for (TaskListItem* item : m_sorted) {
        if (item->matches ? !noneGoes : !noneComes)
            item->matches = isLetThrough(*item);
        fillGuests(*item);
    }
    layOut();
    m_observers.tell();
}

void TaskListView::layOut() {
    const TaskListLayout::Options options{
        .grouping = m_options.groupBy,
        .isDoneOpen = m_options.isDoneOpen,
        .hidesUnderParents = nests(m_filter) && m_search.isBlank() && m_meeting.empty(),
    };
    m_rows.assign(TaskListLayout(m_items, m_sections, m_environment.text, options, m_pass).rows(m_sorted));
}

void TaskListView::changeRows(const TaskListItem& item) {
    const UUID id = item.task->id();
    for (std::size_t place = 0; place < m_rows.size(); ++place)
        if (m_rows[place].id.task == id)
            m_rows.change(place, TaskListLayout::row(item, m_rows[place].id.section));
}

void TaskListView::momentPassed() {
    m_moment = TaskMoment::at(m_environment.clock.now(), m_environment.calendar);
    if (m_forecast) {
        const Query forecast = forecastQuery(m_moment, m_environment.calendar);
        m_forecast->assign({.where = forecast.where, .values = forecast.values});
    }
    if (m_filter.kind == TaskFilter::Kind::today || m_filter.kind == TaskFilter::Kind::upcoming)
        reload();
    else
        rebuild();
}

/// For the moment after which something is overdue that is not, and for who comes into reach of an upcoming list.
void TaskListView::armTimer() {
    if (m_timer)
        m_environment.queue.cancel(*m_timer);
    m_timer.reset();
    std::optional<Date> next = m_nextDue;
    if (m_filter.kind == TaskFilter::Kind::upcoming)
        next = std::min(next.value_or(Date::max()), m_moment.now + upcomingStep);
    if (!next)
        return;
    constexpr std::chrono::milliseconds longest = std::chrono::hours(24); // the day changes before that
    const auto delay = std::chrono::ceil<std::chrono::milliseconds>(*next - m_environment.clock.now());
    m_timer = m_environment.queue.after(
        std::clamp(delay + std::chrono::milliseconds(1), std::chrono::milliseconds(1), longest), [this] {
            m_timer.reset();
            momentPassed();
        });
}

/// Once a second while the timer runs.
void TaskListView::tick() {
    std::vector<ProjectTask*> tasks;
    for (const RowKey key : m_running)
        if (const auto item = m_items.find(key); item != m_items.end() && !item->second->task->isDeleted())
            tasks.push_back(item->second->task.get());
    if (tasks.empty())
        return;
    TaskMoment moment = m_moment;
    moment.now = m_environment.clock.now();
    TaskRowMaker maker(m_environment.main.context(), tasks, moment, m_environment.calendar);
    for (const ProjectTask* task : tasks) {
        TaskListItem& item = *m_items.at(task->key());
        item.words = maker.words(*task);
        changeRows(item);
    }
}

} // namespace quillorn
