#include "API/TagDTO.h"

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

} // namespace quillorn
