#include "API/NoteController.h"

#include "API/NoteRequests.h"
#include "Models/NoteSearch.h"
#include "Models/Project.h"

namespace quillorn {

HttpResponse NoteController::list(const HttpRequest& request) const {
    const NoteSearch search{
        .includeArchived = queryBool(request, "archived").value_or(false),
        .title = queryValue(request, "title"),
        .projectId = queryUUID(request, "projectId"),
        .pinned = queryBool(request, "pinned"),
        .titleOrContent = queryValue(request, "search"),
    };
    return listOf([&](ModelContext& context) { return findNotes(context, search, text()); });
}

HttpResponse NoteController::create(const HttpRequest& request) const {
    return createFrom<CreateNoteRequest>(
        request, [](ModelContext& context, const CreateNoteRequest& body, Date now) -> Note& {
            return context.insert<Note>(Note::Arguments{.title = body.title.value_or(""),
                                                        .content = body.content.value_or(""),
                                                        .project = findLinked<Project>(context, body.projectId)},
                                        now);
        });
}

HttpResponse NoteController::update(const HttpRequest& request) const {
    return updateFrom<UpdateNoteRequest>(
        request, [](ModelContext& context, Note& note, const UpdateNoteRequest& body, Date now) {
            if (body.title)
                note.setTitle(*body.title);
            if (body.content)
                note.setContent(*body.content);
            if (body.isPinned)
                note.setPinned(*body.isPinned);
            if (body.projectId)
                note.setProject(findLinked<Project>(context, body.projectId));
            note.setUpdatedAt(now);
        });
}

HttpResponse NoteController::pin(const HttpRequest& request) const {
    return act(request, [](Note& note, Date now) { note.togglePin(now); });
}

} // namespace quillorn
