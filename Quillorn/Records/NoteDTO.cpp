#include "Records/NoteDTO.h"

#include "Models/Note.h"
#include "Models/Project.h"
#include "Records/Rows.h"

namespace quillorn {

namespace {

constexpr std::tuple noteFields{
    wireField<&NoteDTO::id, &Note::id>("id", "Identifies the note for good."),
    wireField<&NoteDTO::title, &Note::title>("title", "Its title; that of a comment is empty."),
    wireField<&NoteDTO::content, &Note::content>("content", "The text."),
    wireField<&NoteDTO::createdAt, &Note::createdAt>("createdAt", "When it was created."),
    wireField<&NoteDTO::updatedAt, &Note::updatedAt>("updatedAt", "When it was last changed."),
    wireField<&NoteDTO::isPinned, &Note::isPinned>("isPinned", "Whether it is kept at hand."),
    wireField<&NoteDTO::projectId>("projectId", "Its project. Notes need none."),
    wireField<&NoteDTO::preview, &Note::preview>(
        "preview", "The text on one line. Of more than 250 characters it shows the first 250 and \"...\"."),
};

} // namespace

const RecordType& NoteDTO::recordType() {
    static constexpr auto fields = wireFields<NoteDTO>(noteFields);
    static constexpr RecordType type{"NoteDTO", fields};
    return type;
}

NoteRows::NoteRows(ModelContext&, std::vector<Note*> notes, Date) : m_notes(std::move(notes)) {
    for (const Note* note : m_notes)
        note->project();
}

void NoteRows::fill(std::size_t index, NoteDTO& record) const {
    const Note& note = *m_notes[index];
    copyFields(noteFields, note, record);
    record.projectId = idOf(note.project());
}

RowKey NoteRows::key(std::size_t index) const {
    return m_notes[index]->key();
}

} // namespace quillorn
