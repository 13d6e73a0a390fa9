#pragma once

#include "Models/TaskTotals.h"
#include "Records/WireRecord.h"

namespace quillorn {

class ModelContext;
class Tag;

struct TagDTO {
    UUID id;
    std::string name;
    std::string color;
    /// Number of tasks with the tag.
    std::int64_t taskCount = 0;
    Date createdAt{};
    Date updatedAt{};

    void fill(const Tag& tag, std::int64_t count);

    static const RecordType& recordType();
};

class TagRows {
  public:
    using Object = Tag;
    using Record = TagDTO;

    TagRows(ModelContext& context, std::vector<Tag*> tags, Date now);

    std::size_t size() const { return m_tags.size(); }
    void fill(std::size_t index, TagDTO& record) const;

  private:
    std::vector<Tag*> m_tags;
    TagCounts m_counts;
};

} // namespace quillorn
