#include "Records/GroupRecord.h"

#include "Models/Project.h"
#include "Models/ProjectDivider.h"
#include "Store/ModelContext.h"

namespace quillorn {

namespace {

constexpr std::tuple groupFields{
    wireField<&GroupRecord::id, &ProjectDivider::id>("id", "Identifies the group for good."),
    wireField<&GroupRecord::title, &ProjectDivider::title>("title", "What it is called."),
    wireField<&GroupRecord::clientId, &ProjectDivider::clientID>(
        "clientId", "The client whose projects it groups; absent for projects without a client."),
    wireField<&GroupRecord::sortOrder, &ProjectDivider::sortOrder>("sortOrder", "Its place among projects and groups."),
    wireField<&GroupRecord::createdAt, &ProjectDivider::createdAt>("createdAt", "When it was created."),
    wireField<&GroupRecord::projectIds>("projectIds", "Its projects in their order, without archived ones."),
};

} // namespace

const RecordType& GroupRecord::recordType() {
    static constexpr auto fields = wireFields<GroupRecord>(groupFields);
    static constexpr RecordType type{"Group", fields};
    return type;
}

GroupRows::GroupRows(ModelContext& context, std::vector<ProjectDivider*> groups, Date) : m_groups(std::move(groups)) {
    for (const Project* project : context.fetch<Project>(
             {.where = "groupID IS NOT NULL AND NOT isArchived", .order = "sortOrder, name COLLATE NOCASE, id"}))
        m_members[project->groupID().value_or(UUID{})].push_back(project->id());
}

void GroupRows::fill(std::size_t index, GroupRecord& record) const {
    const ProjectDivider& group = *m_groups[index];
    copyFields(groupFields, group, record);
    const auto members = m_members.find(group.id());
    record.projectIds = members != m_members.end() ? members->second : std::vector<UUID>{};
}

} // namespace quillorn
