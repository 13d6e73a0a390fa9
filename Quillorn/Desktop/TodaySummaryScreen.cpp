#include "Desktop/TodaySummaryScreen.h"

namespace quillorn {

namespace {

using View = TodaySummaryView;

constexpr Role<View::TaskRow> taskRoles[] = {
    role<&View::TaskRow::id>("recordId"),
    role<&View::TaskRow::title>("title"),
    role<&View::TaskRow::subtitle>("subtitle"),
    role<&View::TaskRow::time>("time"),
};
constexpr Role<View::NoteRow> noteRoles[] = {
    role<&View::NoteRow::id>("recordId"),         role<&View::NoteRow::title>("title"),
    role<&View::NoteRow::subtitle>("subtitle"),   role<&View::NoteRow::time>("time"),
    role<&View::NoteRow::isComment>("isComment"),
};

} // namespace

TodaySummaryScreen::TodaySummaryScreen(MainContext& main, const Clock& clock, const Calendar& calendar)
    : m_view(main, clock, calendar),
      m_completed(m_view.completed(), taskRoles),
      m_notes(m_view.notes(), noteRoles),
      m_changes(m_view.observe(telling())) {}

QVariantList TodaySummaryScreen::tiles() const {
    QVariantList list;
    for (const SummaryTile& tile : m_view.tiles())
        list.append(QVariantMap{
            {"label", toVariant(tile.label)}, {"figure", toVariant(tile.value)}, {"note", toVariant(tile.detail)}});
    return list;
}

QVariantMap TodaySummaryScreen::words() {
    return {{"heading", toVariant(View::heading)},       {"completedTitle", toVariant(View::completedTitle)},
            {"notesTitle", toVariant(View::notesTitle)}, {"emptyIcon", toVariant(View::emptyIcon)},
            {"emptyTitle", toVariant(View::emptyTitle)}, {"emptyMessage", toVariant(View::emptyMessage)}};
}

} // namespace quillorn
