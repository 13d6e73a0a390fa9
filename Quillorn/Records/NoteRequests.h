#pragma once

#include "Records/WireRecord.h"

namespace quillorn {

/// What requests to create and to change notes have in common.
struct NoteFields {
    std::optional<std::string> title{};
    std::optional<std::string> content{};
    std::optional<UUID> projectId{};
};

struct CreateNoteRequest : NoteFields {
    static const RecordType& recordType();
};

/// An absent field leaves the value alone.
struct UpdateNoteRequest : NoteFields {
    std::optional<bool> isPinned{};

    static const RecordType& recordType();
};

} // namespace quillorn
