#pragma once

#include "Models/Project.h"
#include "Models/TimeSpent.h"
#include "Store/KeyMap.h"

#include <optional>
#include <string>
#include <vector>

namespace quillorn {

class ModelContext;

/// What a listing shows of a project beyond its own row, added up in the store so that neither tasks nor entries have
/// to be loaded. The numbers are those of Project::taskCount, completedTaskCount and totalTimeSpent, as last saved.
struct ProjectTotals {
    std::int64_t taskCount = 0;
    std::int64_t completedTaskCount = 0;
    double totalTimeSpent = 0;
};

/// The totals of many projects at a time, in a constant number of statements.
class ProjectTotalsTable {
  public:
    /// `projects` belong to `context`; running entries count up to `now`.
    ProjectTotalsTable(ModelContext& context, const std::vector<Project*>& projects, Date now);
    ProjectTotalsTable(ModelContext& context, const std::vector<RowKey>& projects, Date now);

    ProjectTotals of(const Project& project) const { return of(project.key()); }
    ProjectTotals of(RowKey project) const;

  private:
    struct Sums {
        TimeSum time;
        ProjectTotals totals; // without the time
    };

    void countTasks(ModelContext& context, const std::vector<RowKey>& projects);
    /// Adds the time of the rows that `sql` selects, or takes it off with a sign of -1.
    void addTime(ModelContext& context, const std::string& sql, const std::vector<RowKey>& projects, Date now,
                 double sign = 1);

    KeyMap<Sums> m_sums; // no entry: all zero
};

/// The same for a client: Client::projectCount, activeProjectCount, totalTaskCount, activeTaskCount and totalTimeSpent.
struct ClientTotals {
    std::int64_t projectCount = 0;
    std::int64_t activeProjectCount = 0;
    std::int64_t totalTaskCount = 0;
    std::int64_t activeTaskCount = 0;
    double totalTimeSpent = 0;
};

class ClientTotalsTable {
  public:
    ClientTotalsTable(ModelContext& context, const std::vector<Client*>& clients, Date now);

    ClientTotals of(const Client& client) const;
    /// Of all projects of these clients.
    const ProjectTotalsTable& projects() const { return *m_projects; }

  private:
    std::optional<ProjectTotalsTable> m_projects;
    KeyMap<ClientTotals> m_totals; // no entry: all zero
};

} // namespace quillorn
