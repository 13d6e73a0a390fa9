#include "Records/NoteRequests.h"

namespace quillorn {

namespace {

/// What both requests have.
constexpr std::tuple sharedFields{
    wireField<&NoteFields::title>("title", {.description = "Its title.", .defaultValue = R"("")"}),
    wireField<&NoteFields::content>("content", {.description = "The text.", .defaultValue = R"("")"}),
    wireField<&NoteFields::projectId>("projectId", {.description = "Its project, which must exist.",
                                                    .inUpdate = "Moves the note to that project, which must exist."}),
};

} // namespace

const RecordType& CreateNoteRequest::recordType() {
    static constexpr auto fields = wireFields<CreateNoteRequest>(sharedFields);
    static constexpr RecordType type{"CreateNoteRequest", fields};
    return type;
}

const RecordType& UpdateNoteRequest::recordType() {
    static constexpr auto fields = wireFields<UpdateNoteRequest>(
        sharedFields, wireField<&UpdateNoteRequest::isPinned>("isPinned", "Whether it is kept at hand."));
    static constexpr RecordType type{"UpdateNoteRequest", fields, RecordUse::update};
    return type;
}

} // namespace quillorn
