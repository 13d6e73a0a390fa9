#include "CLI/Details.h"
#include "CLI/KeyInput.h"
#include "CLI/RecordCommandLine.h"
#include "CLI/RecordDefinitions.h"
#include "CLI/TextEditor.h"
#include "Models/Note.h"
#include "Models/NoteSearch.h"
#include "Models/Project.h"
#include "Platform/Calendar.h"
#include "Records/Edits.h"
#include "Records/NoteDTO.h"
#include "Records/NoteRequests.h"
#include "Records/RecordChoice.h"

#include <CLI/CLI.hpp>

namespace quillorn {

namespace {

struct NoteOptions : RecordOptions {
    UpdateNoteRequest fields;
    std::optional<std::string> project;
    std::optional<std::string> search;
    bool isPinned = false;
    bool isUnpinned = false;
    bool showsComments = false;
    bool showsArchived = false;
};

void addFields(CLI::App* command, NoteOptions& options) {
    command->add_option("--content", options.fields.content, "What it says; - reads it from standard input")
        ->type_name("TEXT");
    command->add_option("--project", options.project, "The project that it is on")->type_name("PROJECT");
}

/// The options with what standard input says; before the store is open for writing, which others may wait for.
NoteOptions withContentRead(NoteOptions options) {
    if (options.fields.content == "-")
        options.fields.content = readValue("-", "");
    return options;
}

/// The fields with what has to be looked up.
UpdateNoteRequest fieldsOf(const NoteOptions& options, StoreWork& work) {
    UpdateNoteRequest fields = options.fields;
    if (options.project)
        fields.projectId = chooseProject(work.context, *options.project, work.text()).id();
    if (options.isPinned || options.isUnpinned)
        fields.isPinned = options.isPinned;
    return fields;
}

std::vector<Note*> find(StoreWork& work, const NoteOptions& options) {
    NoteSearch search{.includeArchived = options.showsArchived, .titleOrContent = options.search};
    if (options.project)
        search.projectId = chooseProject(work.context, *options.project, work.text()).id();
    if (options.isPinned)
        search.pinned = true;
    auto notes = findNotes(work.context, search, work.text());
    if (!options.showsComments)
        std::erase_if(notes, [](const Note* note) { return note->task() != nullptr; });
    return notes;
}

void printList(const std::vector<Note*>& notes, StoreWork& work) {
    using Column = Table::Column;
    Table table({{"Id"},
                 {"Title", Column::Align::left, Column::Cut::ifNarrow},
                 {"Project", Column::Align::left, Column::Cut::ifNarrow},
                 {"Changed"},
                 {"Pinned"}});
    for (const Note* note : notes)
        table.add({{note->id().string(), shortId(note->id()), Paint::dim},
                   note->displayTitle(),
                   note->project() != nullptr ? note->project()->name() : std::string(),
                   {formatISO8601(note->updatedAt()), work.calendar().abbreviatedDateAndTime(note->updatedAt())},
                   {note->isPinned() ? "true" : "false", note->isPinned() ? "yes" : ""}});
    if (!table.isEmpty())
        table.print();
}

void print(Note& note, StoreWork& work) {
    Details details;
    details.add("Title", {note.displayTitle(), Paint::bold});
    details.add("Id", note.id().string());
    if (note.project() != nullptr)
        details.add("Project", note.project()->name());
    details.add("Changed", {formatISO8601(note.updatedAt()), work.calendar().abbreviatedDateAndTime(note.updatedAt())});
    if (note.isPinned())
        details.add("Pinned", {"true", "yes"});
    if (!isForPeople())
        details.add("Content", note.content());
    details.print();
    if (isForPeople() && !note.content().empty())
        printText("Content", note.content());
}

/// Stores what the editor has left, unless the note is another one by now.
ExitStatus storeEdited(const Note& read, const std::string& edited, bool json, StoreWork& work) {
    try {
        ModelContext context(work.context.container(), ModelContext::Intent::update);
        Note* note = context.find<Note>(read.id());
        if (note == nullptr)
            throw std::runtime_error("the note was deleted meanwhile");
        if (note->content() != read.content())
            throw std::runtime_error("the note was changed meanwhile");
        UpdateNoteRequest request;
        request.content = edited;
        StoreWork update{work.session, context, work.session.clock().now()};
        updateNote(context, *note, request, update.now);
        context.save();
        printChanged<NoteRows>(update, {note}, json, "Changed");
        return ExitStatus::success;
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(fmt::format("{}. {}", error.what(), wordsForKept(edited)));
    }
}

/// Nobody has to wait while the user writes.
ExitStatus editInEditor(const NoteOptions& options, const ProcessInfo& process) {
    return withStore(process, ModelContext::Intent::read, [&](StoreWork& work) {
        if (options.names.size() != 1 || options.names.front() == "-")
            throw std::runtime_error("the editor takes one note at a time");
        const Note& note = chooseNote(work.context, options.names.front(), work.text());
        work.context.endReading();
        const std::string edited = editedText(note.content());
        if (edited != note.content())
            return storeEdited(note, edited, options.json, work);
        if (options.json)
            printJson(Json(Json::Array{}));
        else
            fmt::print("Unchanged: {}\n", shown(nameOf(note)));
        return ExitStatus::success;
    });
}

Note& make(StoreWork& work, const NoteOptions& options) {
    CreateNoteRequest request;
    const UpdateNoteRequest fields = fieldsOf(options, work);
    static_cast<NoteFields&>(request) = static_cast<const NoteFields&>(fields);
    request.title = joined(options.names);
    Note& note = createNote(work.context, request, work.now);
    note.setPinned(options.isPinned);
    return note;
}

auto edit(StoreWork& work, const NoteOptions& options) {
    return [&work, request = fieldsOf(options, work)](Note& note) -> Note& {
        updateNote(work.context, note, request, work.now);
        return note;
    };
}

} // namespace

void addNoteCommands(CLI::App& app, Action& chosen) {
    CLI::App* note = addParent(app, "note", "Keep notes");
    const RecordKind<NoteRows> kind{note, chosen, "NOTE",
                                    "Notes: id, title, the beginning of an id or a part of a title; - reads them",
                                    chooseNote};
    auto listed = std::make_shared<NoteOptions>();
    CLI::App* list =
        addListing<NoteRows>(note, chosen, "Show the notes, what was changed last first", listed, find, printList);
    list->add_option("--project", listed->project, "On a project")->type_name("PROJECT");
    list->add_option("--search", listed->search, "With this in title or content")->type_name("TEXT");
    list->add_flag("--pinned", listed->isPinned, "Pinned ones alone");
    list->add_flag("--comments", listed->showsComments, "Comments on tasks as well");
    list->add_flag("--archived", listed->showsArchived, "Those of archived projects as well");

    auto made = std::make_shared<NoteOptions>();
    CLI::App* add = addMaking<NoteRows>(note, chosen, "TITLE", "What it is called", "Make a note", made, make);
    runs(add, chosen, made, [](const NoteOptions& given, const ProcessInfo& process) {
        return makeOne<NoteRows>(withContentRead(given), process, make);
    });
    addFields(add, *made);
    add->add_flag("--pin", made->isPinned, "Pin it to the top");
    addShowing(kind, "Show a note", print);

    auto changed = std::make_shared<NoteOptions>();
    CLI::App* editing =
        addChanging(kind, "edit", "Change notes, in an editor unless options say how", "Changed", changed, edit);
    editing->footer("The editor is the one that VISUAL or EDITOR names.");
    CLI::Option* title = editing->add_option("--title", changed->fields.title, "The new title")->type_name("TITLE");
    addFields(editing, *changed);
    CLI::Option* pin = editing->add_flag("--pin", changed->isPinned, "Pin it to the top");
    CLI::Option* unpin = editing->add_flag("--unpin", changed->isUnpinned, "Don't pin it any more")->excludes(pin);
    const std::vector<CLI::Option*> ways{title, pin, unpin, editing->get_option("--content"),
                                         editing->get_option("--project")};
    editing->callback([=, &chosen] {
        const bool isSaid = std::ranges::any_of(ways, [](const CLI::Option* way) { return way->count() > 0; });
        chosen = [=](const ProcessInfo& process) {
            if (!isSaid)
                return editInEditor(*changed, process);
            Batch batch(changed->names);
            const NoteOptions read = withContentRead(*changed);
            return withStore(process, ModelContext::Intent::update, [&](StoreWork& work) {
                return changeEach(work, batch, Chosen<NoteRows>{changed->names, chooseNote, changed->json}, "Changed",
                                  edit(work, read));
            });
        };
    });
    addDeleting(kind, "Delete notes",
                [](const std::vector<Note*>& notes) { return questionFor(notes, "Notes", deletionOfNote); });
}

} // namespace quillorn
