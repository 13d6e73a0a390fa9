#include "Models/ProjectTask.h"
#include "Platform/Clock.h"
#include "Views/TaskListView.h"

#include <algorithm>
#include <utility>

namespace quillorn {

namespace {

/// Tasks of an upcoming list come into reach by time alone.
constexpr std::chrono::minutes upcomingStep{1};

/// Above this number of changed tasks laying out everything takes less time than placing each.
constexpr std::size_t mostPlaced = 8;

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
    std::vector<Change> changes;
    std::vector<ProjectTask*> changed;
    for (const RowStep& step : told.steps) {
        if (step.kind == RowStep::Kind::removed)
            drop(step.key, changes);
        else if (auto* task = m_environment.main.context().find<ProjectTask>(step.key);
                 task != nullptr && std::ranges::find(changed, task) == changed.end())
            changed.push_back(task);
    }
    take(changed, changes);
    if (!placeRows(changes))
        layOut();
    armTimer();
    m_observers.tell();
}

void TaskListView::drop(RowKey key, std::vector<Change>& changes) {
    const auto found = m_items.find(key);
    if (found == m_items.end())
        return;
    TaskListItem& item = *found->second;
    changes.push_back({.id = item.id, .former = TaskListPlacement::roleOf(item), .isElsewhere = true});
    m_tally.add(item.share, -1);
    std::erase(m_sorted, &item);
    m_items.erase(found);
    m_running.erase(key);
    m_meetings.reset();
}

/// False where everything has to be laid out again.
bool TaskListView::placeRows(std::vector<Change>& changes) {
    if (changes.size() > mostPlaced)
        return false;
    TaskListPlacement placement(m_rows, m_plan, m_items, m_sorted, m_sections);
    // What is gone, then what is there from the end of the list.
    std::ranges::sort(changes, [this](const Change& a, const Change& b) {
        return a.item == nullptr || b.item == nullptr ? b.item != nullptr && a.item == nullptr
                                                      : isEarlier(*b.item, *a.item);
    });
    for (const Change& change : changes) {
        if (change.item == nullptr ? !placement.remove(change.id, change.former)
                                   : change.isElsewhere && !placement.place(*change.item, change.former))
            return false;
        if (change.item != nullptr && !change.isElsewhere)
            changeRows(*change.item);
    }
    return true;
}

void TaskListView::rebuild() {
    const TaskListItems former = std::exchange(m_items, {});
    m_sorted.clear();
    m_sections.clear();
    m_tally = {};
    m_meetings.reset();
    m_nextDue.reset();
    m_moment = TaskMoment::at(m_environment.clock.now(), m_environment.calendar);
    std::vector<ProjectTask*> tasks;
    tasks.reserve(m_members.size());
    for (std::size_t place = 0; place < m_members.size(); ++place)
        tasks.push_back(&m_members[place]);
    sortTasks(tasks, m_options.sortOrder, m_environment.text);
    const auto totals = TaskTotalsTable::withoutTime(m_environment.main.context(), tasks);
    readTagged();
    m_items.reserve(tasks.size());
    m_sorted.reserve(tasks.size());
    std::vector<TaskListItem*> shown;
    for (ProjectTask* task : tasks) {
        auto item = std::make_unique<TaskListItem>();
        if (const auto known = former.find(task->key()); known != former.end())
            item->words = known->second->words;
        else
            item->words = TaskRowText(*this, task->key());
        fill(*item, *task, totals.of(*task));
        if (item->words.isMade())
            shown.push_back(item.get());
        m_tally.add(item->share);
        m_sorted.push_back(item.get());
        m_items.emplace(task->key(), std::move(item));
    }
    m_running.clear();
    renew(shown);
    for (TaskListItem* item : m_sorted)
        fillGuests(*item); // when all members are known
    layOut();
    armTimer();
    m_observers.tell();
}

void TaskListView::take(const std::vector<ProjectTask*>& tasks, std::vector<Change>& changes) {
    if (tasks.empty())
        return;
    const std::size_t first = changes.size();
    const auto totals = TaskTotalsTable::withoutTime(m_environment.main.context(), tasks);
    readTagged();
    std::vector<TaskListItem*> shown;
    for (ProjectTask* task : tasks) {
        changes.push_back(take(*task, totals.of(*task)));
        if (changes.back().item->words.isMade())
            shown.push_back(changes.back().item);
    }
    renew(shown);
    place(std::span(changes).subspan(first));
}

/// Of everything but the words and the place in the order.
TaskListView::Change TaskListView::take(ProjectTask& task, const TaskTotals& totals) {
    auto& item = m_items[task.key()];
    Change change{.isNew = item == nullptr};
    if (change.isNew) {
        item = std::make_unique<TaskListItem>();
        item->words = TaskRowText(*this, task.key());
    } else {
        change.former = TaskListPlacement::roleOf(*item);
        m_tally.add(item->share, -1);
    }
    change.item = item.get();
    const bool hadGuests = !item->guests.empty();
    const std::uint32_t revision = m_sections.revision();
    fill(*item, task, totals);
    fillGuests(*item);
    m_tally.add(item->share);
    m_meetings.reset();
    change.isElsewhere = change.isNew || hadGuests || !item->guests.empty() || revision != m_sections.revision() ||
                         change.former != TaskListPlacement::roleOf(*item);
    return change;
}

/// Puts their items where the order wants them.
void TaskListView::place(std::span<Change> changes) {
    const auto earlier = [this](const TaskListItem* a, const TaskListItem* b) { return isEarlier(*a, *b); };
    if (changes.size() == 1 && !changes[0].isNew) {
        TaskListItem* item = changes[0].item;
        const auto at = std::ranges::find(m_sorted, item);
        if ((at == m_sorted.begin() || !earlier(item, *std::prev(at))) &&
            (std::next(at) == m_sorted.end() || !earlier(*std::next(at), item)))
            return;
    }
    // All are out before the first one is put back, for among items that are out of order no place can be found.
    std::vector<TaskListItem*> items;
    for (Change& change : changes) {
        if (!change.isNew)
            std::erase(m_sorted, change.item);
        items.push_back(change.item);
        change.isElsewhere = true;
    }
    for (TaskListItem* item : items)
        m_sorted.insert(std::ranges::lower_bound(m_sorted, item, earlier), item);
}

bool TaskListView::isEarlier(const TaskListItem& a, const TaskListItem& b) const {
    const ProjectTask& first = *a.task;
    const ProjectTask& second = *b.task;
    if (isBefore(first, second, m_options.sortOrder, m_environment.text))
        return true;
    return !isBefore(second, first, m_options.sortOrder, m_environment.text) && first.key() < second.key();
}

void TaskListView::fill(TaskListItem& item, ProjectTask& task, const TaskTotals& totals) {
    item.task = Held<ProjectTask>(task);
    item.id = task.id();
    item.parent = task.parentKey();
    item.depth = static_cast<std::uint32_t>(totals.depth);
    item.hasSubtasks = totals.subtaskCount > (m_options.showsCompleted ? 0 : totals.completedSubtaskCount);
    item.isOpen = item.hasSubtasks && m_options.open.contains(task.id());
    item.searched.reset();
    item.matches = isLetThrough(item);
    item.share = TaskTally::shareOf(task, m_moment);
    item.sections.clear();
    if (m_options.groupBy == GroupBy::none && m_sections.size() == 1)
        item.sections.push_back(0); // the one that there is
    else
        for (const SectionHead& head : sectionsOf(task, m_options.groupBy, m_moment))
            item.sections.push_back(m_sections.number(head));
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
        fill(*guest, *task, maker.totals().of(*task));
        guest->words = TaskRowText(maker.words(*task));
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
    return m_search.isInSearched(*item.searched) || std::ranges::binary_search(m_tagged, item.task->key());
}

/// Once for each search and each change, since tasks need not have their tags loaded for it.
void TaskListView::readTagged() {
    m_tagged.clear();
    if (!m_search.isBlank())
        m_tagged = m_search.taggedTasks(m_environment.main.context());
}

/// `former` is the search before this one, where nothing but the search has changed.
void TaskListView::narrow(const TaskTextSearch* former) {
    const bool noneComes = former != nullptr && m_search.isWithin(*former);
    const bool noneGoes = former != nullptr && former->isWithin(m_search);
    readTagged();
    for (TaskListItem* item : m_sorted) {
        if (item->matches ? !noneGoes : !noneComes)
            item->matches = isLetThrough(*item);
        fillGuests(*item);
    }
    layOut();
    m_observers.tell();
}

void TaskListView::layOut() {
    const TaskListOptions options{
        .grouping = m_options.groupBy,
        .isDoneOpen = m_options.isDoneOpen,
        .hidesUnderParents = nests(m_filter) && m_search.isBlank() && m_meeting.empty(),
    };
    TaskListLayout layout(m_items, m_sections, m_environment.text, options, m_pass);
    m_rows.assign(layout.rows(m_sorted));
    m_plan = std::move(layout).plan();
}

void TaskListView::changeRows(const TaskListItem& item) {
    for (std::size_t place = 0; place < m_rows.size(); ++place)
        if (m_rows[place].id.task == item.id)
            m_rows.change(place, taskRow(item, m_rows[place].id.section));
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

} // namespace quillorn
