#include "Models/TaskTotals.h"

#include "Models/RestrictedStatement.h"
#include "Models/Tag.h"
#include "Models/TimeSpent.h"
#include "Store/KeyList.h"

#include <algorithm>
#include <fmt/core.h>

namespace quillorn {

namespace {

using Parents = std::unordered_map<RowKey, RowKey>;

/// The parent of each of the tasks that has one, and of each ancestor.
Parents parentsOf(ModelContext& context, const std::vector<RowKey>& tasks) {
    Parents parents;
    // UNION, not UNION ALL: it drops what was seen, so that even a circle ends.
    const StatementLoan rows =
        restrictedStatement(context,
                            tasks.size() <= keyLookupLimit
                                ? "WITH RECURSIVE up(task, parent) AS ("
                                  "SELECT key, parentTask FROM ProjectTask WHERE key{} "
                                  "UNION SELECT p.key, p.parentTask FROM up JOIN ProjectTask p ON p.key = up.parent) "
                                  "SELECT task, parent FROM up WHERE parent IS NOT NULL"
                                : "SELECT key, parentTask FROM ProjectTask WHERE parentTask{}",
                            tasks);
    while (rows->step())
        parents.emplace(rows->integer(0), rows->integer(1));
    return parents;
}

/// Fills in the depth of every task that has a parent. In a circle of tasks, which only a damaged store has, each has
/// all the others above it.
void addDepths(const Parents& parents, const std::vector<RowKey>& tasks,
               std::unordered_map<RowKey, TaskTotals>& totals) {
    constexpr std::int64_t onPath = -1;
    std::unordered_map<RowKey, std::int64_t> depths;
    for (const RowKey task : tasks) {
        std::vector<RowKey> path; // from the task up to where the depth is known
        RowKey at = task;
        while (parents.contains(at) && depths.emplace(at, onPath).second) {
            path.push_back(at);
            at = parents.at(at);
        }
        const auto known = depths.find(at);
        std::int64_t depth = known == depths.end() ? 0 : known->second;
        if (depth == onPath) {
            const auto circle = std::find(path.begin(), path.end(), at);
            depth = path.end() - circle - 1;
            std::for_each(circle, path.end(), [&](RowKey member) { depths[member] = depth; });
            path.erase(circle, path.end());
        }
        for (auto ancestor = path.rbegin(); ancestor != path.rend(); ++ancestor)
            depths[*ancestor] = ++depth;
        if (const auto found = depths.find(task); found != depths.end())
            totals[task].depth = found->second;
    }
}

} // namespace

TaskTotalsTable::TaskTotalsTable(ModelContext& context, const std::vector<ProjectTask*>& tasks, Date now) {
    const std::vector<RowKey> keys = keysOf(tasks);
    m_totals.reserve(keys.size());
    {
        const StatementLoan rows = restrictedStatement(
            context, fmt::format("SELECT task, {} FROM TimeEntry WHERE task{{}} GROUP BY task", timeSpentSQL), keys);
        bindPresent(*rows, now);
        while (rows->step())
            m_totals[rows->integer(0)].totalTimeSpent = timeSpent(*rows, 1);
    }
    {
        const StatementLoan rows = restrictedStatement(
            context,
            "SELECT parentTask, count(*), count(completedAt) FROM ProjectTask WHERE parentTask{} GROUP BY parentTask",
            keys);
        while (rows->step()) {
            TaskTotals& totals = m_totals[rows->integer(0)];
            totals.subtaskCount = rows->integer(1);
            totals.completedSubtaskCount = rows->integer(2);
        }
    }
    addDepths(parentsOf(context, keys), keys, m_totals);
}

TaskTotals TaskTotalsTable::of(const ProjectTask& task) const {
    const auto found = m_totals.find(task.key());
    return found == m_totals.end() ? TaskTotals{} : found->second;
}

TagCounts::TagCounts(ModelContext& context, const std::vector<Tag*>& tags) {
    if (tags.empty())
        return;
    const StatementLoan rows = restrictedStatement(
        context, "SELECT tag, count(*) FROM ProjectTask_Tag WHERE tag{} GROUP BY tag", keysOf(tags));
    while (rows->step())
        m_counts.emplace(rows->integer(0), rows->integer(1));
}

std::int64_t TagCounts::of(const Tag& tag) const {
    const auto found = m_counts.find(tag.key());
    return found == m_counts.end() ? 0 : found->second;
}

} // namespace quillorn
