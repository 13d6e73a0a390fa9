#include "MCP/ToolLists.h"
#include "Models/NoteSearch.h"
#include "Records/Edits.h"
#include "Records/Lookup.h"
#include "Records/NoteRequests.h"

namespace quillorn {

namespace {

struct NoteArguments {
    UUID noteId;
};

struct UpdateNoteArguments : UpdateNoteRequest {
    UUID noteId;
};

Note& findNote(const ToolCall& call, const UUID& id) {
    return findOrThrow<Note>(call.context, id);
}

} // namespace

std::vector<Tool> noteTools() {
    using Search = NoteSearch;
    using Create = CreateNoteRequest;
    using Update = UpdateNoteArguments;
    return {
        readingTool<Search>(
            "search_notes",
            "Search notes by title or content. Filter by project or pinned status. By default excludes notes under "
            "archived projects or clients.",
            {{"search", &Search::titleOrContent, "Search in title and content (case-insensitive)"},
             {"projectId", &Search::projectId, "Filter by project UUID"},
             {"pinned", &Search::pinned, "Filter to only pinned notes"},
             {"includeArchived", &Search::includeArchived, "Include notes under archived projects or clients"}},
            [](const ToolCall& call, const Search& search) { return findNotes(call.context, search, call.text); }),
        readingTool<NoteArguments>("get_note", "Get a specific note by ID.",
                                   {{"noteId", &NoteArguments::noteId, "Note UUID"}},
                                   [](const ToolCall& call, const NoteArguments& arguments) -> Note& {
                                       return findNote(call, arguments.noteId);
                                   }),
        changingTool<Create>("create_note", "Create a new note. Optionally assign to a project.",
                             {{"title", &Create::title, "Note title (defaults to 'Untitled Note')"},
                              {"content", &Create::content, "Note content text"},
                              {"projectId", &Create::projectId, "Parent project UUID"}},
                             [](const ToolCall& call, const Create& arguments) -> Note& {
                                 Create request = arguments;
                                 if (!request.title)
                                     request.title = Note::Arguments{}.title;
                                 return createNote(call.context, request, call.now);
                             }),
        changingTool<Update>("update_note", "Update a note's title, content, or pinned status.",
                             {{"noteId", &Update::noteId, "Note UUID (required)"},
                              {"title", &Update::title, "New title"},
                              {"content", &Update::content, "New content"},
                              {"isPinned", &Update::isPinned, "Pin or unpin the note"},
                              {"projectId", &Update::projectId, "New parent project UUID"}},
                             [](const ToolCall& call, const Update& arguments) -> Note& {
                                 auto& note = findNote(call, arguments.noteId);
                                 updateNote(call.context, note, arguments, call.now);
                                 return note;
                             }),
        changingTool<NoteArguments>("delete_note", "Delete a note permanently.",
                                    {{"noteId", &NoteArguments::noteId, "Note UUID"}},
                                    [](const ToolCall& call, const NoteArguments& arguments) {
                                        call.context.remove(findNote(call, arguments.noteId));
                                    }),
        changingTool<NoteArguments>("toggle_pin_note", "Toggle the pinned status of a note.",
                                    {{"noteId", &NoteArguments::noteId, "Note UUID"}},
                                    [](const ToolCall& call, const NoteArguments& arguments) -> Note& {
                                        auto& note = findNote(call, arguments.noteId);
                                        note.togglePin(call.now);
                                        return note;
                                    }),
    };
}

} // namespace quillorn
