#include "Desktop/QuickAddScreen.h"

namespace quillorn {

QuickAddScreen::QuickAddScreen(const ViewEnvironment& environment)
    : m_view(environment),
      m_changes(m_view.observe(telling())) {}

QVariantList QuickAddScreen::chips() const {
    QVariantList list;
    for (const QuickAddView::Chip& chip : m_view.chips())
        list.append(QVariantMap{
            {"symbol", toVariant(chip.symbol)}, {"text", toVariant(chip.text)}, {"tone", toVariant(chip.tone)}});
    return list;
}

QVariantMap QuickAddScreen::words() {
    using View = QuickAddView;
    return {{"windowTitle", toVariant(View::windowTitle)}, {"prompt", toVariant(View::prompt)},
            {"notesPrompt", toVariant(View::notesPrompt)}, {"hint", toVariant(View::hint)},
            {"startButton", toVariant(View::startButton)}, {"addButton", toVariant(View::addButton)}};
}

bool QuickAddScreen::add() {
    return m_view.add().has_value();
}

bool QuickAddScreen::addAndStart() {
    bool isAdded = false;
    attempt([&] { isAdded = m_view.addAndStart().has_value(); });
    return isAdded;
}

} // namespace quillorn
