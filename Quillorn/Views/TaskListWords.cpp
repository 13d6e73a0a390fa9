#include "Models/ProjectTask.h"
#include "Platform/Clock.h"
#include "Store/StoreError.h"
#include "Views/TaskListView.h"

#include <algorithm>

namespace quillorn {

namespace {

/// A screenful: making the words of one row takes nearly as long.
constexpr std::size_t madeTogether = 32;

} // namespace

/// Words that somebody has seen are made again as soon as they may have changed.
void TaskListView::renew(const std::vector<TaskListItem*>& shown) {
    std::vector<ProjectTask*> tasks;
    tasks.reserve(shown.size());
    for (const TaskListItem* item : shown)
        tasks.push_back(item->task.get());
    if (tasks.empty())
        return;
    TaskMoment moment = m_moment;
    moment.now = m_environment.clock.now();
    TaskRowMaker maker(m_environment.main.context(), tasks, moment, m_environment.calendar);
    for (TaskListItem* item : shown) {
        item->words = TaskRowText(maker.words(*item->task));
        noteRunning(*item, maker);
    }
}

/// With those that stand behind it, which are asked for next as a rule.
void TaskListView::makeWords(RowKey task) {
    const auto asked = m_items.find(task);
    if (asked == m_items.end())
        return;
    std::vector<TaskListItem*> items{asked->second.get()};
    for (auto at = std::ranges::find(m_sorted, items[0]); at != m_sorted.end() && items.size() < madeTogether; ++at)
        if (*at != items[0] && (*at)->matches && !(*at)->words.isMade())
            items.push_back(*at);
    std::erase_if(items, [](const TaskListItem* item) { return item->task->isDeleted(); });
    std::vector<ProjectTask*> tasks;
    tasks.reserve(items.size());
    for (const TaskListItem* item : items)
        tasks.push_back(item->task.get());
    try {
        TaskMoment moment = m_moment;
        moment.now = m_environment.clock.now();
        TaskRowMaker maker(m_environment.main.context(), tasks, moment, m_environment.calendar);
        for (TaskListItem* item : items) {
            item->words.give(maker.words(*item->task));
            noteRunning(*item, maker);
        }
    } catch (const StoreError&) { // rows are asked for while they are drawn; the next time may have more luck
        return;
    }
}

void TaskListView::noteRunning(const TaskListItem& item, const TaskRowMaker& maker) {
    if (maker.totals().of(*item.task).isRunning)
        m_running.insert(item.task->key());
    else
        m_running.erase(item.task->key());
}

/// Once a second while the timer runs.
void TaskListView::tick() {
    std::vector<TaskListItem*> shown;
    for (const RowKey key : m_running)
        if (const auto item = m_items.find(key); item != m_items.end() && !item->second->task->isDeleted())
            shown.push_back(item->second.get());
    renew(shown);
    for (const TaskListItem* item : shown)
        changeRows(*item);
}

} // namespace quillorn
