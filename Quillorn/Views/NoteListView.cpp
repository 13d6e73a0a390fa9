#include "Views/NoteListView.h"

#include "Models/Formatters.h"
#include "Models/Project.h"
#include "Platform/Clock.h"
#include "Platform/Text.h"
#include "Records/Edits.h"
#include "Records/Lookup.h"
#include "Records/NoteRequests.h"
#include "Services/DayChangeObserver.h"
#include "Store/MainContext.h"
#include "Views/DetailView.h"
#include "Views/NoteDetailView.h"

#include <utility>

namespace quillorn {

namespace {

ObservedCondition notesOf(const NoteScope& scope) {
    ObservedCondition condition{
        .dependencies = {
            {&Project::entityType(), "project IN changed"},
            {&Client::entityType(), "project IN (SELECT Project.key FROM Project WHERE client IN changed)"}}};
    switch (scope.kind) {
    case NoteScope::Kind::all:
        condition.where = "task IS NULL AND (project IS NULL OR project NOT IN (SELECT Project.key FROM Project LEFT "
                          "JOIN Client ON Client.key = Project.client WHERE Project.isArchived OR Client.isArchived))";
        break;
    case NoteScope::Kind::client:
        condition.where = "task IS NULL AND project IN (SELECT Project.key FROM Project JOIN Client ON Client.key = "
                          "Project.client WHERE Client.id = ?)";
        condition.values = {scope.id};
        break;
    case NoteScope::Kind::project:
        condition.where = "task IS NULL AND project IN (SELECT key FROM Project WHERE id = ?)";
        condition.values = {scope.id};
        break;
    }
    return condition;
}

bool isAbove(const Note& a, const Note& b) {
    return std::pair(a.isPinned(), a.updatedAt()) > std::pair(b.isPinned(), b.updatedAt());
}

} // namespace

NoteListView::NoteListView(const ViewEnvironment& environment, NoteScope scope)
    : m_environment(environment),
      m_scope(scope),
      m_notes(environment.main, notesOf(scope), isAbove),
      m_steps(m_notes.observe([this](const RowSteps&) { m_isBehind = true; })),
      m_changes(environment.main.observe([this](const ChangeSet&) {
          if (std::exchange(m_isBehind, false))
              show();
      })),
      m_day(environment.days.observe([this] { show(); })) {
    show();
}

NoteListView::Row NoteListView::rowOf(const Note& note) const {
    Row row{note.id(), bounded(note.displayTitle(), 200), note.listPreview(),
            smartDate(note.updatedAt(), m_environment.clock.now(), m_environment.calendar)};
    if (const Project* project = note.project(); project != nullptr && m_scope.kind != NoteScope::Kind::project) {
        row.project = project->name();
        row.color = project->color();
    }
    row.isPinned = note.isPinned();
    row.pinButton = NoteDetailView::pinButton(row.isPinned);
    return row;
}

void NoteListView::show() {
    const std::string_view wanted = trimBlanks(m_searchText);
    const Text::Needle needle = m_environment.text.needle(wanted);
    std::vector<Row> rows;
    for (std::size_t place = 0; place < m_notes.size(); ++place) {
        const Note& note = m_notes[place];
        if (wanted.empty() || needle.isIn(note.title()) || needle.isIn(note.content()))
            rows.push_back(rowOf(note));
    }
    m_rows.assign(std::move(rows));
    m_observers.tell();
}

void NoteListView::setSearchText(std::string text) {
    if (m_searchText == text)
        return;
    m_searchText = std::move(text);
    show();
}

std::string NoteListView::countText() const {
    return counted(m_rows.size(), "note");
}

std::optional<EmptyState> NoteListView::emptyState() const {
    if (!m_rows.isEmpty())
        return std::nullopt;
    if (!trimBlanks(m_searchText).empty())
        return EmptyState{"note.text", "No Notes Found", "Nothing matches your search.", ""};
    return EmptyState{"note.text", "No Notes", "Write down what you want to keep.", "New Note"};
}

std::optional<UUID> NoteListView::add() {
    CreateNoteRequest request;
    request.title = newTitle;
    if (m_scope.kind == NoteScope::Kind::project)
        request.projectId = m_scope.id;
    std::optional<UUID> made;
    try {
        m_environment.history.perform(
            "Add Note", [&](ModelContext& context, Date now) { made = createNote(context, request, now).id(); });
    } catch (const RecordNotFound&) {
        made.reset(); // the project has gone, and this list goes with it
    }
    return made;
}

void NoteListView::togglePin(const UUID& note) {
    m_environment.history.perform("Pin Note", [&](ModelContext& context, Date now) {
        if (auto* found = context.find<Note>(note))
            found->togglePin(now);
    });
}

std::optional<Confirmation> NoteListView::deletion(const UUID& note) const {
    const auto* found = m_environment.main.context().find<Note>(note);
    return found != nullptr ? std::optional(deletionOfNote(*found)) : std::nullopt;
}

void NoteListView::remove(const UUID& note) {
    if (auto* found = m_environment.main.context().find<Note>(note)) {
        m_environment.main.context().remove(*found);
        m_environment.main.save();
    }
}

} // namespace quillorn
