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

    TaskRowWords words(const ProjectTask& task);
    const TaskTotalsTable& totals() const { return m_totals; }

  private:
    const std::string& dueLabelOf(Date due);
    void readTags(ModelContext& context, const std::vector<RowKey>& tasks);
    void addBelongings(const ProjectTask& task, TaskRowWords& words) const;

    const TaskMoment& m_moment;
    const Calendar& m_calendar;
    TaskTotalsTable m_totals;
    KeyMap<std::int64_t> m_comments;
    KeyMap<std::vector<TagChip>> m_tags;
    std::map<std::chrono::sys_days, std::string> m_dueLabels; // by day: formatting takes longer than all else
};

} // namespace quillorn
