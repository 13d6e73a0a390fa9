#include "Models/TaskTotals.h"

#include "Models/RestrictedStatement.h"
#include "Models/Tag.h"
#include "Store/KeyCondition.h"

#include <algorithm>

namespace quillorn {

namespace {

using Parents = KeyMap<RowKey>;

struct KnownTagCounts {
    KeyMap<std::int64_t> tasks;
};

/// The parent of each of the tasks that has one, and of each ancestor.
Parents parentsOf(ModelContext& context, const std::vector<RowKey>& tasks) {
    Parents parents;
    // UNION, not UNION ALL: it drops what was seen, so that even a circle ends.
    const StatementLoan rows =
        restrictedStatement(context,
                            tasks.size() <= KeyCondition::lookupLimit
                                ? "WITH RECURSIVE up(task, parent) AS ("
                                  "SELECT key, parentTask FROM ProjectTask WHERE key{} "
                                  "UNION SELECT p.key, p.parentTask FROM up JOIN ProjectTask p ON p.key = up.parent) "
                                  "SELECT task, parent FROM up WHERE parent IS NOT NULL"
                                : "SELECT key, parentTask FROM ProjectTask WHERE parentTask{}",
                            tasks);
    while (rows->step())
        parents[rows->integer(0)] = rows->integer(1);
    return parents;
}

} // namespace

TaskTotalsTable::TaskTotalsTable(ModelContext& context, const std::vector<ProjectTask*>& tasks, Date now) {
    const std::vector<RowKey> keys = keysOf(tasks);
    m_sums.reserve(keys.size());
    addTimes(context, keys, now);
    addTree(context, tasks, keys);
}

TaskTotalsTable TaskTotalsTable::withoutTime(ModelContext& context, const std::vector<ProjectTask*>& tasks) {
    TaskTotalsTable table;
    table.addTree(context, tasks, keysOf(tasks));
    return table;
}

void TaskTotalsTable::addTree(ModelContext& context, const std::vector<ProjectTask*>& tasks,
                              const std::vector<RowKey>& keys) {
    addSubtasks(context, keys);
    if (std::ranges::any_of(tasks, [](const ProjectTask* task) { return task->parentKey() != 0; }))
        addDepths(context, keys);
}

void TaskTotalsTable::addTimes(ModelContext& context, const std::vector<RowKey>& tasks, Date now) {
    // Adding up here takes half the time of sum() and GROUP BY.
    const StatementLoan rows =
        restrictedStatement(context, "SELECT task, startTime, endTime FROM TimeEntry WHERE task{}", tasks);
    while (rows->step())
        m_sums[rows->integer(0)].time.add(*rows, 1, now);
}

void TaskTotalsTable::addSubtasks(ModelContext& context, const std::vector<RowKey>& tasks) {
    const StatementLoan rows = restrictedStatement(
        context,
        "SELECT parentTask, count(*), count(completedAt) FROM ProjectTask WHERE parentTask{} GROUP BY parentTask",
        tasks);
    while (rows->step()) {
        TaskTotals& totals = m_sums[rows->integer(0)].totals;
        totals.subtaskCount = rows->integer(1);
        totals.completedSubtaskCount = rows->integer(2);
    }
}

/// In a circle of tasks, which only a damaged store has, each has all the others above it.
void TaskTotalsTable::addDepths(ModelContext& context, const std::vector<RowKey>& tasks) {
    constexpr std::int64_t onPath = -1;
    const Parents parents = parentsOf(context, tasks);
    KeyMap<std::int64_t> depths;
    std::vector<RowKey> path; // from the task up to where the depth is known
    for (const RowKey task : tasks) {
        path.clear();
        RowKey at = task;
        for (const RowKey* parent = parents.find(at); parent != nullptr && !depths.contains(at);
             parent = parents.find(at)) {
            depths[at] = onPath;
            path.push_back(at);
            at = *parent;
        }
        const std::int64_t* known = depths.find(at);
        std::int64_t depth = known == nullptr ? 0 : *known;
        if (depth == onPath) {
            const auto circle = std::find(path.begin(), path.end(), at);
            depth = path.end() - circle - 1;
            std::for_each(circle, path.end(), [&](RowKey member) { depths[member] = depth; });
            path.erase(circle, path.end());
        }
        for (auto ancestor = path.rbegin(); ancestor != path.rend(); ++ancestor)
            depths[*ancestor] = ++depth;
        if (const std::int64_t* found = depths.find(task))
            m_sums[task].totals.depth = *found;
    }
}

TaskTotals TaskTotalsTable::of(const ProjectTask& task) const {
    const Sums* found = m_sums.find(task.key());
    if (found == nullptr)
        return {};
    TaskTotals totals = found->totals;
    totals.totalTimeSpent = found->time.seconds();
    totals.isRunning = found->time.isRunning();
    return totals;
}

TagCounts::TagCounts(ModelContext& context, const std::vector<Tag*>& tags) {
    if (tags.empty())
        return;
    KeyMap<std::int64_t>& known = context.derived<KnownTagCounts>().tasks;
    std::vector<RowKey> missing = keysOf(tags);
    std::erase_if(missing, [&](RowKey tag) { return known.contains(tag); });
    if (!missing.empty()) {
        // Counting for each tag by itself takes a third of the time of GROUP BY.
        const StatementLoan rows = restrictedStatement(
            context, "SELECT t.key, (SELECT count(*) FROM ProjectTask_Tag WHERE tag = t.key) FROM Tag t WHERE t.key{}",
            missing);
        while (rows->step())
            known[rows->integer(0)] = rows->integer(1);
    }
    m_counts = known;
}

std::int64_t TagCounts::of(const Tag& tag) const {
    const std::int64_t* found = m_counts.find(tag.key());
    return found == nullptr ? 0 : *found;
}

} // namespace quillorn
