#pragma once

#include "Models/Note.h"

#include <optional>
#include <vector>

namespace quillorn {

class ModelContext;
class Text;

/// Which notes, comments among them, a listing shows; an absent condition does not restrict.
struct NoteSearch {
    /// Otherwise notes are left out whose own or whose task's project, or its client, is archived.
    bool includeArchived = false;
    /// Contained in the title, without regard to case.
    std::optional<std::string> title{};
    std::optional<UUID> projectId{};
    std::optional<bool> pinned{};
    /// Contained in the title or in the content, without regard to case.
    std::optional<std::string> titleOrContent{};
};

/// The notes that match, what was changed last first. `text` compares in the user's locale.
std::vector<Note*> findNotes(ModelContext& context, const NoteSearch& search, const Text& text);

} // namespace quillorn
