#include "Desktop/TimerScreen.h"

namespace quillorn {

QVariantMap TimerScreen::words() {
    return {{"stopSymbol", toVariant(TimerToolbarView::stopSymbol)},
            {"stopHelp", toVariant(TimerToolbarView::stopHelp)},
            {"stopLabel", toVariant(TimerToolbarView::stopLabel)},
            {"choicesPrompt", toVariant(TimerToolbarView::choicesPrompt)},
            {"startPrompt", toVariant(TimerToolbarView::startPrompt)}};
}

QVariantList TimerScreen::choices(const QString& search) const {
    QVariantList list;
    for (const TimerToolbarView::Choice& choice : m_view.choices(search.toStdString()))
        list.append(QVariantMap{{"id", toVariant(choice.id)},
                                {"title", toVariant(choice.title)},
                                {"subtitle", toVariant(choice.subtitle)},
                                {"isActive", choice.isActive}});
    return list;
}

void TimerScreen::start(const QString& task) {
    if (const std::optional<UUID> id = toId(task))
        attempt([&] { m_view.start(*id); });
}

QVariantList TimerScreen::earlier() {
    QVariantList list;
    for (const int minutes : TimerToolbarView::earlierMinutes)
        list.append(QVariantMap{{"label", toVariant(TimerToolbarView::earlierLabel(minutes))}, {"minutes", minutes}});
    return list;
}

} // namespace quillorn
