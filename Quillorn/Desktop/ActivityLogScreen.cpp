#include "Desktop/ActivityLogScreen.h"

namespace quillorn {

namespace {

using Row = ActivityLogView::Row;

constexpr Role<Row> roles[] = {
    role<&Row::isHeading>("isHeading"), role<&Row::title>("title"),     role<&Row::subtitle>("subtitle"),
    role<&Row::time>("time"),           role<&Row::icon>("symbol"),     role<&Row::color>("tone"),
    role<&Row::kind>("kind"),           role<&Row::record>("recordId"),
};

const Setting& filterSetting() {
    return setting("activityClientFilter");
}

} // namespace

ActivityLogScreen::ActivityLogScreen(MainContext& main, SceneStorage& scene, const Clock& clock,
                                     const Calendar& calendar, const Text& text)
    : m_scene(scene),
      m_view(main, clock, calendar, text, scene.text(filterSetting())),
      m_model(m_view.rows(), roles),
      m_changes(m_view.observe(telling())) {}

QVariantList ActivityLogScreen::filters() const {
    QVariantList list;
    for (const ActivityLogView::FilterChoice& choice : m_view.filterChoices())
        list.append(QVariantMap{{"id", choice.client ? toVariant(*choice.client) : QVariant("")},
                                {"name", toVariant(choice.name)}});
    return list;
}

void ActivityLogScreen::setFilter(const QString& client) {
    m_scene.set(filterSetting(), Json(client.toStdString()));
    m_view.setClientFilterRaw(client.toStdString());
}

QVariantMap ActivityLogScreen::header() const {
    const ActivityDashboardHeader& header = m_view.header();
    QVariantList days;
    for (const ActivityDashboardHeader::Bar& bar : header.lastSevenDays)
        days.append(QVariantMap{
            {"label", toVariant(bar.label)}, {"value", toVariant(bar.count)}, {"text", QString::number(bar.count)}});
    QVariantList types;
    for (const ActivityDashboardHeader::Category& category : header.byType)
        types.append(QVariantMap{{"label", toVariant(category.label)},
                                 {"tone", toVariant(category.color)},
                                 {"count", toVariant(category.count)}});
    return {{"today", QString::number(header.today)},
            {"line", toVariant(header.line)},
            {"lineIcon", toVariant(header.lineIcon)},
            {"days", days},
            {"types", types},
            {"total", toVariant(header.total)}};
}

QVariantMap ActivityLogScreen::words() const {
    using Header = ActivityDashboardHeader;
    return {{"filterLabel", toVariant(ActivityLogView::filterLabel)},
            {"filterHelp", toVariant(ActivityLogView::filterHelp)},
            {"emptyIcon", toVariant(ActivityLogView::emptyIcon)},
            {"emptyTitle", toVariant(ActivityLogView::emptyTitle)},
            {"emptyMessage", toVariant(m_view.emptyMessage())},
            {"todayLabel", toVariant(Header::todayLabel)},
            {"todayIcon", toVariant(Header::todayIcon)},
            {"sevenDaysLabel", toVariant(Header::sevenDaysLabel)},
            {"byTypeLabel", toVariant(Header::byTypeLabel)}};
}

} // namespace quillorn
