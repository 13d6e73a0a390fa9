#include "API/NoteController.h"

#include "Models/NoteSearch.h"
#include "Records/Edits.h"
#include "Records/NoteRequests.h"

namespace quillorn {

HttpResponse NoteController::list(const HttpRequest& request) const {
    const NoteSearch search{
        .includeArchived = queryBool(request, "archived").value_or(false),
        .title = queryValue(request, "title"),
        .projectId = queryUUID(request, "projectId"),
        .pinned = queryBool(request, "pinned"),
        .titleOrContent = queryValue(request, "search"),
    };
    return listOf(request, [&](ModelContext& context) { return findNotes(context, search, text()); });
}

HttpResponse NoteController::create(const HttpRequest& request) const {
    return createFrom<CreateNoteRequest>(request, createNote);
}

HttpResponse NoteController::update(const HttpRequest& request) const {
    return updateFrom<UpdateNoteRequest>(request, updateNote);
}

HttpResponse NoteController::pin(const HttpRequest& request) const {
    return act(request, [](Note& note, Date now) { note.togglePin(now); });
}

} // namespace quillorn
