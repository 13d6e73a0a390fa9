#include "Desktop/NoteScreens.h"

namespace quillorn {

namespace {

using Row = NoteListView::Row;

constexpr Role<Row> roles[] = {
    role<&Row::id>("recordId"),       role<&Row::title>("title"),         role<&Row::preview>("preview"),
    role<&Row::when>("when"),         role<&Row::project>("project"),     role<&Row::color>("tone"),
    role<&Row::isPinned>("isPinned"), role<&Row::pinButton>("pinButton"),
};

} // namespace

NoteListScreen::NoteListScreen(const ViewEnvironment& environment, NoteScope scope)
    : m_view(environment, scope),
      m_model(m_view.rows(), roles),
      m_changes(m_view.observe(telling())) {}

QString NoteListScreen::add() {
    const std::optional<UUID> made = m_view.add();
    return made ? toQString(made->string()) : QString();
}

void NoteListScreen::togglePin(const QString& note) {
    if (const auto id = toId(note))
        attempt([&] { m_view.togglePin(*id); });
}

QVariantMap NoteListScreen::deletion(const QString& note) const {
    const auto id = toId(note);
    return id ? toQuestion(m_view.deletion(*id)) : QVariantMap();
}

void NoteListScreen::remove(const QString& note) {
    if (const auto id = toId(note))
        attempt([&] { m_view.remove(*id); });
}

NoteScreen::NoteScreen(const ViewEnvironment& environment, SceneStorage& scene, const UUID& note)
    : m_view(environment, scene, note),
      m_changes(m_view.observe(telling())) {}

QString NoteScreen::warning() const {
    const std::string_view title = m_view.field(NoteDetailView::Field::title).notice();
    return toQString(!title.empty() ? title : m_view.field(NoteDetailView::Field::content).notice());
}

QVariantMap NoteScreen::texts() {
    return {{"titlePrompt", toVariant(NoteDetailView::titlePrompt)},
            {"contentPrompt", toVariant(NoteDetailView::contentPrompt)},
            {"previewLabel", toVariant(NoteDetailView::previewLabel)},
            {"gone", toVariant(NoteDetailView::gone)}};
}

void NoteScreen::revert() {
    m_view.revert(NoteDetailView::Field::title);
    m_view.revert(NoteDetailView::Field::content);
}

} // namespace quillorn
