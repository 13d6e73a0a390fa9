#include "Views/TaskRowMaker.h"

#include "Models/Formatters.h"
#include "Models/Project.h"
#include "Models/RestrictedStatement.h"
#include "Models/Tag.h"
#include "Platform/Calendar.h"

#include <fmt/core.h>
#include <utility>

namespace quillorn {

TaskRowMaker::TaskRowMaker(ModelContext& context, const std::vector<ProjectTask*>& tasks, const TaskMoment& moment,
                           const Calendar& calendar)
    : m_moment(moment),
      m_calendar(calendar),
      m_totals(context, tasks, moment.now) {
    const std::vector<RowKey> keys = keysOf(tasks);
    {
        const StatementLoan rows =
            restrictedStatement(context, "SELECT task, count(*) FROM Note WHERE task{} GROUP BY task", keys);
        while (rows->step())
            m_comments[rows->integer(0)] = rows->integer(1);
    }
    readTags(context, keys);
}

/// The relation would be loaded for all tasks that are loaded, and these may be few of them.
void TaskRowMaker::readTags(ModelContext& context, const std::vector<RowKey>& tasks) {
    std::vector<std::pair<RowKey, RowKey>> links;
    {
        const StatementLoan rows = restrictedStatement(
            context, "SELECT task, tag FROM ProjectTask_Tag WHERE task{} ORDER BY task, tag", tasks);
        while (rows->step())
            links.emplace_back(rows->integer(0), rows->integer(1));
    }
    for (const auto& [task, tag] : links)
        if (const Tag* found = context.find<Tag>(tag))
            m_tags[task].push_back({found->name(), found->color()});
}

const std::string& TaskRowMaker::dueLabelOf(Date due) {
    const auto [place, isNew] = m_dueLabels.try_emplace(std::chrono::sys_days(m_calendar.day(due)));
    if (isNew)
        place->second = dueLabel(due, m_moment.now, m_calendar);
    return place->second;
}

TaskRowWords TaskRowMaker::words(const ProjectTask& task) {
    TaskRowWords words;
    words.title = task.title();
    words.symbol = symbol(task.status());
    words.statusLabel = label(task.status());
    words.mark = mark(task.priority());
    words.isCompleted = task.isCompleted();
    words.isOverdue = task.isOverdue(m_moment.now);
    if (task.dueDate()) {
        words.dueText = dueLabelOf(*task.dueDate());
        if (task.dueHasTime())
            words.dueTimeText = m_calendar.format(*task.dueDate(), "h:mm a");
    }
    addBelongings(task, words);
    return words;
}

void TaskRowMaker::addBelongings(const ProjectTask& task, TaskRowWords& words) const {
    if (const Project* project = task.project()) {
        words.projectName = project->name();
        words.color = project->color();
    }
    if (const std::vector<TagChip>* tags = m_tags.find(task.key()))
        words.tags = *tags;
    const TaskTotals totals = m_totals.of(task);
    if (totals.subtaskCount > 0)
        words.subtasksText = fmt::format("{}/{}", totals.completedSubtaskCount, totals.subtaskCount);
    if (const std::int64_t* comments = m_comments.find(task.key()))
        words.countText = std::to_string(*comments);
    if (totals.totalTimeSpent > 0)
        words.timeText = shortForm(totals.totalTimeSpent);
}

} // namespace quillorn
