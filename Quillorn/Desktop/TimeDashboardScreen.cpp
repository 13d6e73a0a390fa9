#include "Desktop/TimeDashboardScreen.h"

#include "Desktop/Values.h"

namespace quillorn {

namespace {

using Row = TimeDashboard::RecentRow;

constexpr Role<Row> roles[] = {
    role<&Row::isHeading>("isHeading"), role<&Row::title>("title"),         role<&Row::subtitle>("subtitle"),
    role<&Row::color>("tone"),          role<&Row::times>("times"),         role<&Row::duration>("duration"),
    role<&Row::notes>("notes"),         role<&Row::isRunning>("isRunning"), role<&Row::entry>("entry"),
};

} // namespace

TimeDashboardScreen::TimeDashboardScreen(MainContext& main, const Clock& clock, const Calendar& calendar,
                                         const TimeScope& scope)
    : m_view(main, clock, calendar, scope),
      m_model(m_view.recent(), roles),
      m_changes(m_view.observe(telling())) {}

QVariantList TimeDashboardScreen::figures() const {
    QVariantList list;
    for (const TimeFigure& figure : m_view.figures())
        list.append(QVariantMap{{"label", toVariant(figure.label)},
                                {"figure", toVariant(figure.value)},
                                {"note", toVariant(figure.detail)}});
    return list;
}

QVariantList TimeDashboardScreen::days() const {
    QVariantList list;
    for (const TimeDashboard::Bar& bar : m_view.lastSevenDays())
        list.append(
            QVariantMap{{"label", toVariant(bar.label)}, {"text", toVariant(bar.value)}, {"value", bar.seconds}});
    return list;
}

QVariantList TimeDashboardScreen::shares(const std::vector<TimeDashboard::ShareRow>& rows) {
    QVariantList list;
    for (const TimeDashboard::ShareRow& row : rows)
        list.append(QVariantMap{{"id", toVariant(row.id)},
                                {"name", toVariant(row.name)},
                                {"tone", toVariant(row.color)},
                                {"figure", toVariant(row.value)},
                                {"part", row.part}});
    return list;
}

QVariantMap TimeDashboardScreen::words() {
    return {{"sevenDaysTitle", toVariant(TimeDashboard::sevenDaysTitle)},
            {"byProjectTitle", toVariant(TimeDashboard::byProjectTitle)},
            {"byTaskTitle", toVariant(TimeDashboard::byTaskTitle)},
            {"recentTitle", toVariant(TimeDashboard::recentTitle)},
            {"editHelp", toVariant(TimeDashboard::editHelp)},
            {"noProjectData", toVariant(TimeEntryStats::noProjectData)},
            {"noTaskData", toVariant(TimeEntryStats::noTaskData)},
            {"showAllButton", toVariant(TimeEntryStats::showAllButton)}};
}

QVariantMap TimeDashboardScreen::deletion(const QString& entry) const {
    const std::optional<UUID> id = toId(entry);
    return id ? toQuestion(m_view.confirmationFor(*id)) : QVariantMap();
}

void TimeDashboardScreen::remove(const QString& entry) {
    if (const std::optional<UUID> id = toId(entry))
        attempt([&] { m_view.remove(*id); });
}

} // namespace quillorn
