#include "Desktop/SidebarScreen.h"

#include "Desktop/Values.h"

namespace quillorn {

namespace {

QVariant keyOf(const SidebarRow& row) {
    const std::optional<SidebarItem> item = row.item();
    return item ? toVariant(item->key()) : QVariant("");
}

constexpr Role<SidebarRow> roles[] = {
    {"kind", [](const SidebarRow& row) { return toVariant(row.id.kind); }},
    {"key", keyOf},
    {"recordId", [](const SidebarRow& row) { return toVariant(row.id.record); }},
    role<&SidebarRow::depth>("depth"),
    role<&SidebarRow::disclosure>("disclosure"),
    role<&SidebarRow::title>("title"),
    role<&SidebarRow::symbol>("symbol"),
    role<&SidebarRow::color>("tone"),
    role<&SidebarRow::countText>("countText"),
    role<&SidebarRow::help>("help"),
    role<&SidebarRow::isRenaming>("isRenaming"),
    {"takesTasks", [](const SidebarRow& row) { return toVariant(SidebarView::takesTasks(row.id)); }},
};

} // namespace

SidebarScreen::SidebarScreen(const ViewEnvironment& environment, SceneStorage& scene, NotificationCenter& notifications)
    : m_view(environment, scene, notifications),
      m_model(m_view.rows(), roles),
      m_changes(m_view.observe(telling())) {}

const SidebarRow* SidebarScreen::at(int row) {
    const std::vector<SidebarRow>& rows = m_view.rows().rows();
    return row >= 0 && row < static_cast<int>(rows.size()) ? &rows[static_cast<std::size_t>(row)] : nullptr;
}

QVariantMap SidebarScreen::deletion() const {
    return toQuestion(m_view.deletion());
}

QVariantMap SidebarScreen::sheet() const {
    const std::optional<SidebarSheet>& sheet = m_view.sheet();
    if (!sheet)
        return {};
    constexpr const char* kinds[] = {"client", "project", "tag"};
    return {{"kind", kinds[static_cast<int>(sheet->kind)]},
            {"record", toVariant(sheet->record)},
            {"client", toVariant(sheet->client)}};
}

std::optional<SidebarItem> SidebarScreen::item(int row) {
    const SidebarRow* found = at(row);
    return found != nullptr ? found->item() : std::nullopt;
}

void SidebarScreen::toggle(int row) {
    const SidebarRow* found = at(row);
    if (found == nullptr)
        return;
    const SidebarRow::Id id = found->id;
    if (id.kind == SidebarRow::Kind::section)
        m_view.toggleSection(id.section);
    else
        attempt([&] { m_view.toggle(id); });
}

void SidebarScreen::act(int row) {
    const SidebarRow* found = at(row);
    if (found == nullptr)
        return;
    switch (const SidebarRow::Kind kind = found->id.kind) {
    case SidebarRow::Kind::addClient:
    case SidebarRow::Kind::addProject:
    case SidebarRow::Kind::addTag:
        return m_view.add(kind);
    default:
        return toggle(row);
    }
}

QVariantList SidebarScreen::menu(int row) {
    QVariantList items;
    const SidebarRow* found = at(row);
    if (found == nullptr)
        return items;
    int index = 0;
    for (const SidebarMenuItem& item : m_view.menu(found->id))
        items.append(
            QVariantMap{{"title", toVariant(item.title)}, {"symbol", toVariant(item.symbol)}, {"index", index++}});
    return items;
}

void SidebarScreen::perform(int row, int index) {
    const SidebarRow* found = at(row);
    if (found == nullptr)
        return;
    const SidebarRow::Id id = found->id;
    const std::vector<SidebarMenuItem> items = m_view.menu(id);
    if (index >= 0 && index < static_cast<int>(items.size()))
        attempt([&] {
            const SidebarMenuItem& item = items[static_cast<std::size_t>(index)];
            m_view.perform(item.action, id, item.group);
        });
}

void SidebarScreen::finishRenaming(const QString& title) {
    attempt([&] { m_view.finishRenaming(title.toStdString()); });
}

bool SidebarScreen::rename(int row) {
    const SidebarRow* found = at(row);
    const std::optional<SidebarAction> action = found != nullptr ? m_view.renaming(found->id) : std::nullopt;
    if (action)
        m_view.perform(*action, SidebarRow::Id(found->id));
    return action.has_value();
}

bool SidebarScreen::move(int row, int by) {
    const SidebarRow* found = at(row);
    bool isMoved = false;
    if (found != nullptr)
        attempt([&, id = found->id] { isMoved = m_view.move(id, by < 0 ? Direction::up : Direction::down); });
    return isMoved;
}

int SidebarScreen::dropPlace(int dragged, int target) {
    const SidebarRow* source = at(dragged);
    const SidebarRow* other = at(target);
    if (source == nullptr || other == nullptr)
        return 0;
    return static_cast<int>(m_view.dropPlace(source->id, other->id));
}

void SidebarScreen::drop(int dragged, int target) {
    const SidebarRow* source = at(dragged);
    const SidebarRow* other = at(target);
    if (source != nullptr && other != nullptr)
        attempt([&, from = source->id, to = other->id] { m_view.drop(from, to); });
}

void SidebarScreen::dropTasks(const std::vector<UUID>& tasks, int row) {
    if (const SidebarRow* found = at(row))
        attempt([&, id = found->id] { m_view.dropTasks(tasks, id); });
}

void SidebarScreen::confirmDeletion() {
    attempt([&] { m_view.confirmDeletion(); });
}

} // namespace quillorn
