#include "Records/ProjectDTO.h"

#include "Records/Rows.h"

namespace quillorn {

namespace {

constexpr std::tuple projectFields{
    wireField<&ProjectDTO::id, &Project::id>("id", "Identifies the project for good."),
    wireField<&ProjectDTO::name, &Project::name>("name", "Its name."),
    wireField<&ProjectDTO::description, &Project::projectDescription>("description", "What it is about, as free text."),
    wireField<&ProjectDTO::color, &Project::color>("color", "Its colour, such as #AF52DE."),
    wireField<&ProjectDTO::createdAt, &Project::createdAt>("createdAt", "When it was created."),
    wireField<&ProjectDTO::updatedAt, &Project::updatedAt>("updatedAt", "When it was last changed."),
    wireField<&ProjectDTO::isArchived, &Project::isArchived>(
        "isArchived", "Whether it is put away. Lists leave out what belongs to an archived project unless asked."),
    wireField<&ProjectDTO::clientId>("clientId", "Its client. Projects need none."),
    wireField<&ProjectDTO::taskCount>("taskCount", {.description = "Number of its tasks.", .minimum = 0}),
    wireField<&ProjectDTO::completedTaskCount>("completedTaskCount",
                                               {.description = "How many of them are completed.", .minimum = 0}),
    wireField<&ProjectDTO::totalTimeSpent>("totalTimeSpent", "Seconds of time on its tasks and on the project itself; "
                                                             "a running entry counts up to the moment of the answer."),
};

} // namespace

const RecordType& ProjectDTO::recordType() {
    static constexpr auto fields = wireFields<ProjectDTO>(projectFields);
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
    copyFields(projectFields, project, record);
    const ProjectTotals totals = m_totals.of(project);
    record.clientId = idOf(project.client());
    record.taskCount = totals.taskCount;
    record.completedTaskCount = totals.completedTaskCount;
    record.totalTimeSpent = totals.totalTimeSpent;
}

} // namespace quillorn
