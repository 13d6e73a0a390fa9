#pragma once

#include "Records/WireRecord.h"

namespace quillorn {

struct CreateNoteRequest {
    std::optional<std::string> title{};
    std::optional<std::string> content{};
    std::optional<UUID> projectId{};

    static const RecordType& recordType();
};

/// An absent field leaves the value alone.
struct UpdateNoteRequest {
    std::optional<std::string> title{};
    std::optional<std::string> content{};
    std::optional<bool> isPinned{};
    std::optional<UUID> projectId{};

    static const RecordType& recordType();
};

} // namespace quillorn
