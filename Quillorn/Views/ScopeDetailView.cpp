#include "Views/ScopeDetailView.h"

#include "Models/Settings.h"
#include "Views/SceneStorage.h"

#include <algorithm>

namespace quillorn {

void NamedDetailView::type(Field field, std::string text) {
    m_fields.at(static_cast<std::size_t>(field)).type(std::move(text));
    tell();
}

bool NamedDetailView::leave(Field field) {
    EditedText& edited = m_fields.at(static_cast<std::size_t>(field));
    if (edited.isEdited() && !write(field, edited.text()))
        return false;
    edited.revert();
    return true;
}

void NamedDetailView::revert(Field field) {
    m_fields.at(static_cast<std::size_t>(field)).revert();
    refuse({});
    tell();
}

void NamedDetailView::showNames(const std::string& name, const std::string& description, const std::string& color) {
    m_fields.at(static_cast<std::size_t>(Field::name)).show(name);
    m_fields.at(static_cast<std::size_t>(Field::description)).show(description);
    m_color = color;
}

ScopeDetailView::ScopeDetailView(const ViewEnvironment& environment, const AIEnvironment& ai, SceneStorage& scene,
                                 ChatContext subject, const Setting& tabSetting)
    : NamedDetailView(environment, subject.id),
      m_ai(ai),
      m_scene(scene),
      m_subject(subject),
      m_tabSetting(tabSetting) {}

std::string_view ScopeDetailView::tab() const {
    const auto known = std::ranges::find(tabs(), m_scene.text(m_tabSetting), &DetailTab::tag);
    return known != tabs().end() ? known->tag : tabs().front().tag;
}

void ScopeDetailView::selectTab(std::string_view tag) {
    if (tab() == tag || std::ranges::find(tabs(), tag, &DetailTab::tag) == tabs().end())
        return;
    m_scene.set(m_tabSetting, std::string(tag));
    tell();
}

void ScopeDetailView::showFigures(std::vector<DetailFigure> figures, bool isArchived) {
    m_figures = std::move(figures);
    m_isArchived = isArchived;
}

TaskListView& ScopeDetailView::tasks() {
    const bool isClient = m_subject.kind == ChatContext::Kind::client;
    if (!m_tasks)
        m_tasks = std::make_unique<TaskListView>(
            environment(), m_scene, TaskFilter{isClient ? TaskFilter::Kind::client : TaskFilter::Kind::project, id()});
    return *m_tasks;
}

TimeDashboard& ScopeDetailView::time() {
    const bool isClient = m_subject.kind == ChatContext::Kind::client;
    if (!m_time)
        m_time = std::make_unique<TimeDashboard>(
            environment().main, environment().clock, environment().calendar,
            TimeScope{isClient ? TimeScope::Kind::client : TimeScope::Kind::project, id()});
    return *m_time;
}

NoteListView& ScopeDetailView::notes() {
    const bool isClient = m_subject.kind == ChatContext::Kind::client;
    if (!m_notes)
        m_notes = std::make_unique<NoteListView>(
            environment(), NoteScope{isClient ? NoteScope::Kind::client : NoteScope::Kind::project, id()});
    return *m_notes;
}

AIChatView& ScopeDetailView::chat() {
    if (!m_chat)
        m_chat = std::make_unique<AIChatView>(m_ai, m_subject);
    return *m_chat;
}

} // namespace quillorn
