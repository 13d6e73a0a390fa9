#include "Records/TagDTO.h"

#include "Models/Tag.h"

namespace quillorn {

const RecordType& TagDTO::recordType() {
    static constexpr auto fields = wireFields({
        wireField<&TagDTO::id>("id"),
        wireField<&TagDTO::name>("name"),
        wireField<&TagDTO::color>("color"),
        wireField<&TagDTO::taskCount>("taskCount"),
        wireField<&TagDTO::createdAt>("createdAt"),
        wireField<&TagDTO::updatedAt>("updatedAt"),
    });
    static constexpr RecordType type{"TagDTO", fields};
    return type;
}

void TagDTO::fill(const Tag& tag, std::int64_t count) {
    id = tag.id();
    name = tag.name();
    color = tag.color();
    taskCount = count;
    createdAt = tag.createdAt();
    updatedAt = tag.updatedAt();
}

TagRows::TagRows(ModelContext& context, std::vector<Tag*> tags, Date)
    : m_tags(std::move(tags)),
      m_counts(context, m_tags) {}

void TagRows::fill(std::size_t index, TagDTO& record) const {
    record.fill(*m_tags[index], m_counts.of(*m_tags[index]));
}

} // namespace quillorn
