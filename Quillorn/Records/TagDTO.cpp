#include "Records/TagDTO.h"

#include "Models/Tag.h"

namespace quillorn {

namespace {

constexpr std::tuple tagFields{
    wireField<&TagDTO::id, &Tag::id>("id", "Identifies the tag for good."),
    wireField<&TagDTO::name, &Tag::name>("name", "Its name."),
    wireField<&TagDTO::color, &Tag::color>("color", "Its colour, such as #FF9500."),
    wireField<&TagDTO::taskCount>("taskCount", {.description = "Number of tasks that carry it.", .minimum = 0}),
    wireField<&TagDTO::createdAt, &Tag::createdAt>("createdAt", "When it was created."),
    wireField<&TagDTO::updatedAt, &Tag::updatedAt>("updatedAt", "When it was last changed."),
};

} // namespace

const RecordType& TagDTO::recordType() {
    static constexpr auto fields = wireFields<TagDTO>(tagFields);
    static constexpr RecordType type{"TagDTO", fields};
    return type;
}

void TagDTO::fill(const Tag& tag, std::int64_t count) {
    copyFields(tagFields, tag, *this);
    taskCount = count;
}

TagRows::TagRows(ModelContext& context, std::vector<Tag*> tags, Date)
    : m_tags(std::move(tags)),
      m_counts(context, m_tags) {}

void TagRows::fill(std::size_t index, TagDTO& record) const {
    record.fill(*m_tags[index], m_counts.of(*m_tags[index]));
}

} // namespace quillorn
