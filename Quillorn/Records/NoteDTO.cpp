#include "Records/NoteDTO.h"

#include "Models/Note.h"
#include "Models/Project.h"
#include "Records/Rows.h"

namespace quillorn {

const RecordType& NoteDTO::recordType() {
    static constexpr auto fields = wireFields({
        wireField<&NoteDTO::id>("id"),
        wireField<&NoteDTO::title>("title"),
        wireField<&NoteDTO::content>("content"),
        wireField<&NoteDTO::createdAt>("createdAt"),
        wireField<&NoteDTO::updatedAt>("updatedAt"),
        wireField<&NoteDTO::isPinned>("isPinned"),
        wireField<&NoteDTO::projectId>("projectId"),
        wireField<&NoteDTO::preview>("preview"),
    });
    static constexpr RecordType type{"NoteDTO", fields};
    return type;
}

NoteRows::NoteRows(ModelContext&, std::vector<Note*> notes, Date) : m_notes(std::move(notes)) {
    for (const Note* note : m_notes)
        note->project();
}

void NoteRows::fill(std::size_t index, NoteDTO& record) const {
    const Note& note = *m_notes[index];
    record.id = note.id();
    record.title = note.title();
    record.content = note.content();
    record.createdAt = note.createdAt();
    record.updatedAt = note.updatedAt();
    record.isPinned = note.isPinned();
    record.projectId = idOf(note.project());
    record.preview = note.preview();
}

RowKey NoteRows::key(std::size_t index) const {
    return m_notes[index]->key();
}

} // namespace quillorn
