#pragma once

#include "API/WireRecord.h"

namespace quillorn {

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

} // namespace quillorn
