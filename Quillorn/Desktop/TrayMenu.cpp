#include "Desktop/TrayMenu.h"

#include "Desktop/Variants.h"

#include <QGuiApplication>

namespace quillorn {

namespace {

/// An underscore would mark the letter behind it.
QString labelOf(const std::string& text) {
    return toQString(text).replace('_', "__");
}

QVariantMap propertiesOf(const TrayView::Item& item) {
    if (item.text.empty())
        return {{"type", "separator"}};
    if (!item.items.empty())
        return {{"label", labelOf(item.text)}, {"children-display", "submenu"}};
    return {{"label", labelOf(item.text)}, {"enabled", item.action != nullptr}};
}

} // namespace

TrayMenu::TrayMenu(TrayView& view) : m_view(view) {
    registerTrayTypes();
}

QString TrayMenu::textDirection() {
    return QGuiApplication::isRightToLeft() ? "rtl" : "ltr";
}

void TrayMenu::update() {
    forget();
    Q_EMIT LayoutUpdated(m_revision, 0);
}

void TrayMenu::forget() {
    if (!m_nodes.empty())
        m_former = std::exchange(m_nodes, {});
    ++m_revision;
}

void TrayMenu::build() {
    const QList<int> children = add(m_view.menu());
    m_nodes[0] = {.properties = {{"children-display", "submenu"}}, .children = children, .action = {}};
}

QList<int> TrayMenu::add(const std::vector<TrayView::Item>& items) {
    QList<int> ids;
    for (const TrayView::Item& item : items) {
        const int id = ++m_lastId;
        ids.append(id);
        m_nodes[id] = {.properties = propertiesOf(item), .children = add(item.items), .action = item.action};
    }
    return ids;
}

TrayMenuNode TrayMenu::node(int id, int depth) const {
    const auto found = m_nodes.find(id);
    if (found == m_nodes.end())
        return {.id = id};
    TrayMenuNode node{.id = id, .properties = found->second.properties};
    for (const int child : found->second.children)
        if (depth != 0)
            node.children.append(this->node(child, depth - 1));
    return node;
}

uint TrayMenu::GetLayout(int parent, int depth, const QStringList&, TrayMenuNode& layout) {
    if (m_nodes.empty())
        build();
    layout = node(parent, depth);
    return m_revision;
}

QList<TrayMenuRow> TrayMenu::GetGroupProperties(const QList<int>& ids, const QStringList&) {
    QList<TrayMenuRow> rows;
    for (const auto& [id, node] : m_nodes)
        if (ids.isEmpty() || ids.contains(id))
            rows.append({.id = id, .properties = node.properties});
    return rows;
}

QDBusVariant TrayMenu::GetProperty(int id, const QString& name) {
    const QVariant value = node(id, 0).properties.value(name);
    return QDBusVariant(value.isValid() ? value : QVariant(QString()));
}

void TrayMenu::Event(int id, const QString& event, const QDBusVariant&, uint) {
    if (event != "clicked")
        return;
    try {
        // A copy, since the choice leads to another menu.
        for (const auto* nodes : {&m_nodes, &m_former})
            if (const auto found = nodes->find(id); found != nodes->end())
                if (const auto action = found->second.action)
                    return action();
    } catch (const std::exception& error) {
        m_view.actions().fail(error.what());
    }
}

QList<int> TrayMenu::EventGroup(const QList<TrayMenuEvent>& events) {
    for (const TrayMenuEvent& each : events)
        Event(each.id, each.event, each.data, each.time);
    return {};
}

bool TrayMenu::AboutToShow(int id) {
    if (id == 0)
        forget();
    return id == 0;
}

QList<int> TrayMenu::AboutToShowGroup(const QList<int>& ids, QList<int>& errors) {
    errors.clear();
    return ids.contains(0) && AboutToShow(0) ? QList<int>{0} : QList<int>{};
}

} // namespace quillorn
