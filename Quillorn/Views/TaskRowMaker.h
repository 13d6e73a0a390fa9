#pragma once

#include "Models/TaskTotals.h"
#include "Store/KeyMap.h"
#include "Views/TaskListRow.h"
#include "Views/TaskMembership.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace quillorn {

/// Puts many tasks into words, in a constant number of statements.
class TaskRowMaker {
  public:
    TaskRowMaker(ModelContext& context, const std::vector<ProjectTask*>& tasks, const TaskMoment& moment,
                 const Calendar& calendar);

    std::shared_ptr<const TaskRowWords> words(const ProjectTask& task);
    TaskTotals totals(const ProjectTask& task) const { return m_totals.of(task); }

  private:
    const std::string& dueLabelOf(Date due);
    void addBelongings(const ProjectTask& task, TaskRowWords& words) const;

    const TaskMoment& m_moment;
    const Calendar& m_calendar;
    TaskTotalsTable m_totals;
    KeyMap<std::int64_t> m_comments;
    std::map<std::chrono::sys_days, std::string> m_dueLabels; // by day: formatting takes longer than all else
};

} // namespace quillorn
