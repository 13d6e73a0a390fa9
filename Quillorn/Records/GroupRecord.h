#pragma once

#include "Records/WireRecord.h"

#include <map>

namespace quillorn {

class ModelContext;
class ProjectDivider;

/// A group of projects.
struct GroupRecord {
    UUID id;
    std::string title;
    std::optional<UUID> clientId{};
    std::int64_t sortOrder = 0;
    Date createdAt{};
    /// Those that are not archived, in the order of their numbers.
    std::vector<UUID> projectIds{};

    static const RecordType& recordType();
};

class GroupRows {
  public:
    using Object = ProjectDivider;
    using Record = GroupRecord;

    GroupRows(ModelContext& context, std::vector<ProjectDivider*> groups, Date now);

    std::size_t size() const { return m_groups.size(); }
    void fill(std::size_t index, GroupRecord& record) const;

  private:
    std::vector<ProjectDivider*> m_groups;
    std::map<UUID, std::vector<UUID>> m_members;
};

} // namespace quillorn
