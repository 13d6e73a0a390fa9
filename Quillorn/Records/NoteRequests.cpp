#include "Records/NoteRequests.h"

namespace quillorn {

const RecordType& CreateNoteRequest::recordType() {
    static constexpr auto fields = wireFields({
        wireField<&CreateNoteRequest::title>("title"),
        wireField<&CreateNoteRequest::content>("content"),
        wireField<&CreateNoteRequest::projectId>("projectId"),
    });
    static constexpr RecordType type{"CreateNoteRequest", fields};
    return type;
}

const RecordType& UpdateNoteRequest::recordType() {
    static constexpr auto fields = wireFields({
        wireField<&UpdateNoteRequest::title>("title"),
        wireField<&UpdateNoteRequest::content>("content"),
        wireField<&UpdateNoteRequest::isPinned>("isPinned"),
        wireField<&UpdateNoteRequest::projectId>("projectId"),
    });
    static constexpr RecordType type{"UpdateNoteRequest", fields};
    return type;
}

} // namespace quillorn
