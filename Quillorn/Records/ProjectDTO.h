#pragma once

#include "Models/ProjectTotals.h"
#include "Records/WireRecord.h"

namespace quillorn {

struct ProjectDTO {
    UUID id;
    std::string name;
    std::optional<std::string> description{};
    std::string color;
    Date createdAt{};
    Date updatedAt{};
    bool isArchived = false;
    std::optional<UUID> clientId{};
    std::int64_t taskCount = 0;
    std::int64_t completedTaskCount = 0;
    /// In seconds; running entries count up to the moment of the answer.
    double totalTimeSpent = 0;

    static const RecordType& recordType();
};

class ProjectRows {
  public:
    using Object = Project;
    using Record = ProjectDTO;

    ProjectRows(ModelContext& context, std::vector<Project*> projects, Date now);

    std::size_t size() const { return m_projects.size(); }
    void fill(std::size_t index, ProjectDTO& record) const;

  private:
    std::vector<Project*> m_projects;
    ProjectTotalsTable m_totals;
};

} // namespace quillorn
