#include "Views/NoteDetailView.h"

#include "Models/Formatters.h"
#include "Models/ProjectTask.h"
#include "Models/Settings.h"
#include "Platform/Clock.h"
#include "Records/Edits.h"
#include "Records/Lookup.h"
#include "Records/NoteRequests.h"

namespace quillorn {

namespace {

ObservedCondition oneNote(const UUID& id) {
    return {.where = "id = ?",
            .values = {id},
            .dependencies = {{&Project::entityType()}, {&Client::entityType()}, {&ProjectTask::entityType()}}};
}

} // namespace

NoteDetailView::NoteDetailView(const ViewEnvironment& environment, SceneStorage& scene, const UUID& note)
    : DetailView(environment, note),
      m_scene(scene),
      m_note(environment.main, oneNote(note)) {
    follow(m_note);
    show();
}

void NoteDetailView::show() {
    const Note* shown = note();
    if (shown == nullptr)
        return; // what was typed can still be copied
    m_fields.at(static_cast<std::size_t>(Field::title)).show(shown->title());
    m_fields.at(static_cast<std::size_t>(Field::content)).show(shown->content());
    m_isPinned = shown->isPinned();
    m_edited = "Edited " + smartDate(shown->updatedAt(), environment().clock.now(), environment().calendar);
    m_path = pathTo(shown->project());
    if (const ProjectTask* task = shown->task()) {
        m_path = pathTo(*task);
        m_path.push_back({task->id(), PathStep::Kind::task, task->title()});
    }
}

void NoteDetailView::type(Field field, std::string text) {
    m_fields.at(static_cast<std::size_t>(field)).type(std::move(text));
    tell();
}

bool NoteDetailView::leave(Field field) {
    EditedText& edited = m_fields.at(static_cast<std::size_t>(field));
    if (edited.isEdited()) {
        UpdateNoteRequest request;
        (field == Field::title ? request.title : request.content) = edited.text();
        if (isGone() ? refuse({std::string(gone)}) : !edit("Edit Note", [&](Note& note, Date now) {
                updateNote(note.context(), note, request, now);
            }))
            return false;
    }
    edited.revert();
    return true;
}

bool NoteDetailView::leaveAll() {
    return leave(Field::title) && leave(Field::content);
}

void NoteDetailView::revert(Field field) {
    m_fields.at(static_cast<std::size_t>(field)).revert();
    refuse({});
    tell();
}

bool NoteDetailView::isPreview() const {
    return m_scene.boolean(setting("notePreviewMode"));
}

void NoteDetailView::setPreview(bool isPreview) {
    if (isPreview && !leave(Field::content))
        return;
    m_scene.set(setting("notePreviewMode"), isPreview);
    tell();
}

bool NoteDetailView::edit(std::string name, const Edit& edit) {
    return perform(std::move(name),
                   [&](ModelContext& context, Date now) { edit(findOrThrow<Note>(context, id()), now); });
}

void NoteDetailView::togglePin() {
    edit(m_isPinned ? "Unpin Note" : "Pin Note", [](Note& note, Date now) { note.togglePin(now); });
}

std::vector<FormChoice> NoteDetailView::projectChoices() const {
    const Note* shown = note();
    const Project* project = shown != nullptr ? shown->project() : nullptr;
    return quillorn::projectChoices(environment(), project != nullptr ? std::optional(project->id()) : std::nullopt);
}

void NoteDetailView::move(const std::optional<UUID>& project) {
    edit("Move Note", [&](Note& note, Date now) {
        note.setProject(findLinked<Project>(note.context(), project));
        note.setUpdatedAt(now);
    });
}

std::optional<Confirmation> NoteDetailView::deletion() const {
    return isGone() ? std::nullopt : std::optional(deletionOfNote(*note()));
}

void NoteDetailView::remove() {
    if (!isGone())
        DetailView::remove(*note());
}

} // namespace quillorn
