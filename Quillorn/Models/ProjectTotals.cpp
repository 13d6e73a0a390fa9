#include "Models/ProjectTotals.h"

#include "Models/RestrictedStatement.h"

#include <fmt/core.h>

namespace quillorn {

namespace {

// Each of these selects a project, a start and an end. They are added up outside of SQLite, whose sum() fails where it
// leaves 64 bits.

constexpr const char* timeOnTasks = "SELECT t.project, e.startTime, e.endTime FROM ProjectTask t "
                                    "JOIN TimeEntry e ON e.task = t.key WHERE t.project{}";

/// Without entries that are linked through a task of the same project as well.
constexpr const char* directTime = "SELECT e.project, e.startTime, e.endTime FROM TimeEntry e "
                                   "LEFT JOIN ProjectTask t ON t.key = e.task "
                                   "WHERE e.project{} AND t.project IS NOT e.project";

/// Nothing keeps entries from having one id. A few projects are asked for theirs one by one; for more, a walk through
/// all ids is faster.
constexpr std::size_t fewProjects = 10;
constexpr const char* repeatedIdsOfFew =
    "SELECT e.id FROM TimeEntry e WHERE (e.project{} OR e.task IN (SELECT key FROM ProjectTask WHERE project{})) "
    "AND EXISTS (SELECT 1 FROM TimeEntry other WHERE other.id = e.id AND other.key <> e.key)";
constexpr const char* repeatedIdsOfAll = "SELECT id FROM TimeEntry GROUP BY id HAVING count(*) > 1";

/// What the two above have too often: of the entries of a project with one id, all but the first in the order of
/// Project::allTimeEntries.
std::string repeatedTime(std::size_t projectCount) {
    return fmt::format(
        "WITH repeated AS ({}), entry AS ("
        "SELECT t.project, e.id, 0 AS isDirect, t.key AS task, e.key, e.startTime, e.endTime "
        "FROM TimeEntry e JOIN ProjectTask t ON t.key = e.task WHERE e.id IN repeated AND t.project{{}} "
        "UNION ALL SELECT e.project, e.id, 1, 0, e.key, e.startTime, e.endTime "
        "FROM TimeEntry e LEFT JOIN ProjectTask t ON t.key = e.task "
        "WHERE e.id IN repeated AND e.project{{}} AND t.project IS NOT e.project), ranked AS ("
        "SELECT *, row_number() OVER (PARTITION BY project, id ORDER BY isDirect, task, key) AS place FROM entry) "
        "SELECT project, startTime, endTime FROM ranked WHERE place > 1",
        projectCount <= fewProjects ? repeatedIdsOfFew : repeatedIdsOfAll);
}

} // namespace

ProjectTotalsTable::ProjectTotalsTable(ModelContext& context, const std::vector<Project*>& projects, Date now)
    : ProjectTotalsTable(context, keysOf(projects), now) {}

ProjectTotalsTable::ProjectTotalsTable(ModelContext& context, const std::vector<RowKey>& projects, Date now) {
    countTasks(context, projects);
    addTime(context, timeOnTasks, projects, now);
    addTime(context, directTime, projects, now);
    addTime(context, repeatedTime(projects.size()), projects, now, -1);
}

void ProjectTotalsTable::countTasks(ModelContext& context, const std::vector<RowKey>& projects) {
    const StatementLoan rows = restrictedStatement(
        context, "SELECT project, count(*), count(completedAt) FROM ProjectTask WHERE project{} GROUP BY project",
        projects);
    while (rows->step()) {
        ProjectTotals& totals = m_sums[rows->integer(0)].totals;
        totals.taskCount = rows->integer(1);
        totals.completedTaskCount = rows->integer(2);
    }
}

void ProjectTotalsTable::addTime(ModelContext& context, const std::string& sql, const std::vector<RowKey>& projects,
                                 Date now, double sign) {
    const StatementLoan rows = restrictedStatement(context, sql, projects);
    while (rows->step())
        m_sums[rows->integer(0)].time.add(*rows, 1, now, sign);
}

ProjectTotals ProjectTotalsTable::of(RowKey project) const {
    const Sums* found = m_sums.find(project);
    if (found == nullptr)
        return {};
    ProjectTotals totals = found->totals;
    totals.totalTimeSpent = found->time.seconds();
    return totals;
}

ClientTotalsTable::ClientTotalsTable(ModelContext& context, const std::vector<Client*>& clients, Date now) {
    std::vector<std::pair<RowKey, RowKey>> owned; // client and project
    std::vector<RowKey> projects;
    {
        const StatementLoan rows =
            restrictedStatement(context, "SELECT client, key, isArchived FROM Project WHERE client{}", keysOf(clients));
        while (rows->step()) {
            owned.emplace_back(rows->integer(0), rows->integer(1));
            projects.push_back(rows->integer(1));
            ClientTotals& totals = m_totals[rows->integer(0)];
            ++totals.projectCount;
            totals.activeProjectCount += rows->integer(2) == 0 ? 1 : 0;
        }
    }
    m_projects.emplace(context, projects, now);
    for (const auto& [client, project] : owned) {
        const ProjectTotals part = m_projects->of(project);
        ClientTotals& totals = m_totals[client];
        totals.totalTaskCount += part.taskCount;
        totals.activeTaskCount += part.taskCount - part.completedTaskCount;
        totals.totalTimeSpent += part.totalTimeSpent;
    }
}

ClientTotals ClientTotalsTable::of(const Client& client) const {
    const ClientTotals* found = m_totals.find(client.key());
    return found == nullptr ? ClientTotals{} : *found;
}

} // namespace quillorn
