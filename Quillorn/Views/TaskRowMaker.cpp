#include "Views/TaskRowMaker.h"

#include "Models/Formatters.h"
#include "Models/Project.h"
#include "Models/RestrictedStatement.h"
#include "Models/Tag.h"
#include "Platform/Calendar.h"

#include <fmt/core.h>

namespace quillorn {

TaskRowMaker::TaskRowMaker(ModelContext& context, const std::vector<ProjectTask*>& tasks, const TaskMoment& moment,
                           const Calendar& calendar)
    : m_moment(moment),
      m_calendar(calendar),
      m_totals(context, tasks, moment.now) {
    const StatementLoan rows =
        restrictedStatement(context, "SELECT task, count(*) FROM Note WHERE task{} GROUP BY task", keysOf(tasks));
    while (rows->step())
        m_comments[rows->integer(0)] = rows->integer(1);
}

const std::string& TaskRowMaker::dueLabelOf(Date due) {
    const auto [place, isNew] = m_dueLabels.try_emplace(std::chrono::sys_days(m_calendar.day(due)));
    if (isNew)
        place->second = dueLabel(due, m_moment.now, m_calendar);
    return place->second;
}

std::shared_ptr<const TaskRowWords> TaskRowMaker::words(const ProjectTask& task) {
    auto words = std::make_shared<TaskRowWords>();
    words->title = task.title();
    words->symbol = symbol(task.status());
    words->statusLabel = label(task.status());
    words->mark = mark(task.priority());
    words->isCompleted = task.isCompleted();
    words->isOverdue = task.isOverdue(m_moment.now);
    if (task.dueDate()) {
        words->dueText = dueLabelOf(*task.dueDate());
        if (task.dueHasTime())
            words->dueTimeText = m_calendar.format(*task.dueDate(), "h:mm a");
    }
    addBelongings(task, *words);
    return words;
}

void TaskRowMaker::addBelongings(const ProjectTask& task, TaskRowWords& words) const {
    if (const Project* project = task.project()) {
        words.projectName = project->name();
        words.color = project->color();
    }
    for (const Tag* tag : task.tags())
        words.tags.push_back({tag->name(), tag->color()});
    const TaskTotals totals = m_totals.of(task);
    if (totals.subtaskCount > 0)
        words.subtasksText = fmt::format("{}/{}", totals.completedSubtaskCount, totals.subtaskCount);
    if (const std::int64_t* comments = m_comments.find(task.key()))
        words.countText = std::to_string(*comments);
    if (totals.totalTimeSpent > 0)
        words.timeText = shortForm(totals.totalTimeSpent);
}

} // namespace quillorn
