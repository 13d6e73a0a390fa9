#pragma once

#include "Records/WireRecord.h"
#include "Store/Relation.h"

namespace quillorn {

class ModelContext;
class Note;

struct NoteDTO {
    UUID id;
    std::string title;
    std::string content;
    Date createdAt{};
    Date updatedAt{};
    bool isPinned = false;
    std::optional<UUID> projectId{};
    /// The content on one line, cut to 250 characters.
    std::string preview;

    static const RecordType& recordType();
};

class NoteRows {
  public:
    using Object = Note;
    using Record = NoteDTO;

    NoteRows(ModelContext& context, std::vector<Note*> notes, Date now);

    std::size_t size() const { return m_notes.size(); }
    void fill(std::size_t index, NoteDTO& record) const;
    RowKey key(std::size_t index) const;
    static std::optional<Date> changesAfter(std::size_t) { return std::nullopt; }

  private:
    std::vector<Note*> m_notes;
};

} // namespace quillorn
