#include "Records/ProjectDTO.h"

#include "Records/Rows.h"

namespace quillorn {

const RecordType& ProjectDTO::recordType() {
    static constexpr auto fields = wireFields({
        wireField<&ProjectDTO::id>("id"),
        wireField<&ProjectDTO::name>("name"),
        wireField<&ProjectDTO::description>("description"),
        wireField<&ProjectDTO::color>("color"),
        wireField<&ProjectDTO::createdAt>("createdAt"),
        wireField<&ProjectDTO::updatedAt>("updatedAt"),
        wireField<&ProjectDTO::isArchived>("isArchived"),
        wireField<&ProjectDTO::clientId>("clientId"),
        wireField<&ProjectDTO::taskCount>("taskCount"),
        wireField<&ProjectDTO::completedTaskCount>("completedTaskCount"),
        wireField<&ProjectDTO::totalTimeSpent>("totalTimeSpent"),
    });
    static constexpr RecordType type{"ProjectDTO", fields};
    return type;
}

ProjectRows::ProjectRows(ModelContext& context, std::vector<Project*> projects, Date now)
    : m_projects(std::move(projects)),
      m_totals(context, m_projects, now) {
    for (const Project* project : m_projects)
        project->client();
}

void ProjectRows::fill(std::size_t index, ProjectDTO& record) const {
    const Project& project = *m_projects[index];
    const ProjectTotals totals = m_totals.of(project);
    record.id = project.id();
    record.name = project.name();
    record.description = project.projectDescription();
    record.color = project.color();
    record.createdAt = project.createdAt();
    record.updatedAt = project.updatedAt();
    record.isArchived = project.isArchived();
    record.clientId = idOf(project.client());
    record.taskCount = totals.taskCount;
    record.completedTaskCount = totals.completedTaskCount;
    record.totalTimeSpent = totals.totalTimeSpent;
}

} // namespace quillorn
