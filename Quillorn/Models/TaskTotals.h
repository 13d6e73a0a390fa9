#pragma once

#include "Models/ProjectTask.h"
#include "Models/TimeSpent.h"
#include "Store/KeyMap.h"

#include <vector>

namespace quillorn {

class ModelContext;

/// What a listing shows of a task beyond its own row, added up in the store so that no entry has to be loaded. The
/// numbers are those of ProjectTask::totalTimeSpent, subtaskCount, completedSubtaskCount and depth, as last saved.
struct TaskTotals {
    double totalTimeSpent = 0;
    std::int64_t subtaskCount = 0;
    std::int64_t completedSubtaskCount = 0;
    std::int64_t depth = 0;
    /// Whether totalTimeSpent grows with each moment.
    bool isRunning = false;
};

/// The totals of many tasks at a time, in a constant number of statements.
class TaskTotalsTable {
  public:
    /// `tasks` belong to `context`; running entries count up to `now`.
    TaskTotalsTable(ModelContext& context, const std::vector<ProjectTask*>& tasks, Date now);
    /// Without the time, which takes longer than all the rest.
    static TaskTotalsTable withoutTime(ModelContext& context, const std::vector<ProjectTask*>& tasks);

    TaskTotals of(const ProjectTask& task) const;

  private:
    struct Sums {
        TimeSum time;
        TaskTotals totals; // without the time
    };

    TaskTotalsTable() = default;
    void addTree(ModelContext& context, const std::vector<ProjectTask*>& tasks, const std::vector<RowKey>& keys);
    void addTimes(ModelContext& context, const std::vector<RowKey>& tasks, Date now);
    void addSubtasks(ModelContext& context, const std::vector<RowKey>& tasks);
    /// Of every task that has a parent.
    void addDepths(ModelContext& context, const std::vector<RowKey>& tasks);

    KeyMap<Sums> m_sums; // no entry: all zero
};

/// Number of tasks of each of the tags, as last saved, in one statement. Counting takes longer than all else that one
/// record needs, so it is done once for each state of the store.
class TagCounts {
  public:
    TagCounts(ModelContext& context, const std::vector<Tag*>& tags);

    std::int64_t of(const Tag& tag) const;

  private:
    KeyMap<std::int64_t> m_counts;
};

} // namespace quillorn
