#include "Models/NoteSearch.h"

#include "Models/SearchConditions.h"
#include "Models/Sorting.h"

namespace quillorn {

std::vector<Note*> findNotes(ModelContext& context, const NoteSearch& search, const Text& text) {
    SearchConditions conditions;
    if (!search.includeArchived) {
        conditions.addProjectNotHidden();
        conditions.addTaskNotHidden();
    }
    if (search.projectId)
        conditions.addProject(*search.projectId);
    if (search.pinned)
        conditions.add(*search.pinned ? "isPinned" : "NOT isPinned");
    auto notes = context.fetch<Note>(std::move(conditions).query());
    keepContaining(notes, text, search.title, &Note::title);
    keepContaining(notes, text, search.titleOrContent, &Note::title, &Note::content);
    sortLatestFirst(notes, &Note::updatedAt);
    return notes;
}

} // namespace quillorn
