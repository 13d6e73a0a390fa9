#include "AI/ChatTool.h"

#include "Models/Note.h"
#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Platform/Text.h"

namespace quillorn {

namespace {

constexpr std::size_t notesOfAList = 15;
constexpr std::size_t contentOfASummary = 4'000; // characters

std::string projectOf(const Note& note) {
    return note.project() != nullptr ? note.project()->name() : "Unassigned";
}

/// What was changed last first.
std::vector<RowKey> latestNotes(const ChatToolCall& call, std::size_t limit) {
    Query query = call.notesInScope();
    if (const auto project = call.arguments.id("projectId"))
        restrict(query, "Note.project IN (SELECT key FROM Project WHERE id = ?)", {*project});
    if (const auto since = call.arguments.instant("since"))
        restrict(query, "updatedAt >= ?", {since->time_since_epoch().count()});
    const auto search = call.arguments.text("search");
    const auto needle = search ? std::optional(call.text.needle(*search)) : std::nullopt;
    const StatementLoan rows = call.context.statement("SELECT key, title, content FROM Note WHERE " + query.where +
                                                      " ORDER BY updatedAt DESC, key");
    rows->bindAll(query.values);
    std::vector<RowKey> keys;
    while (keys.size() < limit && rows->step())
        if (!needle || needle->isIn(rows->text(1)) || needle->isIn(rows->text(2)))
            keys.push_back(rows->integer(0));
    return keys;
}

/// For summaries, which ask for it by `withContent`, also what the notes say and the task that they are a comment on.
Json listNotes(const ChatToolCall& call) {
    const bool hasContent = call.arguments.boolean("withContent") == true;
    Json::Array result;
    for (const Note* note : objectsOf<Note>(call.context, latestNotes(call, call.arguments.limit(notesOfAList)))) {
        Json::Object object{{"id", note->id().string()},    {"title", note->title()},
                            {"preview", note->preview()},   {"project", projectOf(*note)},
                            {"isPinned", note->isPinned()}, {"updatedAt", call.moment(note->updatedAt())}};
        if (hasContent)
            object["content"] = characterPrefix(note->content(), contentOfASummary);
        if (hasContent && note->task() != nullptr)
            object["task"] = note->task()->title();
        result.emplace_back(std::move(object));
    }
    return result;
}

Json getNoteContent(const ChatToolCall& call) {
    const auto id = call.arguments.id("noteId");
    if (!id)
        return toolError("noteId is required and must be a valid UUID");
    Query query = call.notesInScope();
    restrict(query, "id = ?", {*id});
    const auto found = call.context.fetch<Note>(query);
    if (found.empty())
        return toolError("Note not found");
    const Note& note = *found.front();
    return Json::Object{{"id", note.id().string()},
                        {"title", note.title()},
                        {"content", note.content()},
                        {"project", projectOf(note)},
                        {"isPinned", note.isPinned()},
                        {"createdAt", call.moment(note.createdAt())},
                        {"updatedAt", call.moment(note.updatedAt())}};
}

} // namespace

std::vector<ChatTool> chatNoteTools() {
    return {
        {"list_notes",
         "List notes with optional search. Returns title, preview, project, and pinned status.",
         {{"projectId"},
          {"search", "string", "Search in note titles and content (case-insensitive)."},
          {"limit", "integer", "Maximum number of notes to return. Defaults to 15."}},
         &listNotes},
        {"get_note_content",
         "Get the full content of a specific note.",
         {{.name = "noteId", .description = "The note UUID to look up.", .isRequired = true}},
         &getNoteContent},
    };
}

} // namespace quillorn
