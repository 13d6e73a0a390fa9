#include "Models/Client.h"
#include "Store/MainContext.h"
#include "Views/EditHistory.h"
#include "Views/SidebarView.h"

#include <algorithm>

namespace quillorn {

using RowKind = SidebarRow::Kind;
using Action = SidebarAction;

std::vector<SidebarMenuItem> SidebarView::menu(const SidebarRow::Id& row) const {
    switch (row.kind) {
    case RowKind::client: {
        const Client* client = m_environment.main.context().find<Client>(row.record);
        if (client == nullptr)
            return {};
        std::vector<SidebarMenuItem> items{{Action::newProject, "New Project..."},
                                           {Action::newGroup, "New Group", "folder.badge.plus"},
                                           {Action::edit, "Edit..."}};
        items.push_back(client->isArchived() ? SidebarMenuItem{Action::unarchive, "Unarchive"}
                                             : SidebarMenuItem{Action::archive, "Archive"});
        items.push_back({Action::remove, "Delete..."});
        return items;
    }
    case RowKind::project:
        return projectMenu(row);
    case RowKind::group:
        return groupMenu(row);
    case RowKind::tag:
        return {{Action::edit, "Edit..."}, {Action::remove, "Delete..."}};
    case RowKind::section:
        if (row.section == SidebarSection::unassigned)
            return {{Action::newGroup, "New Group", "folder.badge.plus"}};
        return {};
    default:
        return {};
    }
}

std::vector<SidebarMenuItem> SidebarView::projectMenu(const SidebarRow::Id& row) const {
    const Project* project = m_environment.main.context().find<Project>(row.record);
    if (project == nullptr)
        return {};
    std::vector<SidebarMenuItem> items{{Action::edit, "Edit..."}};
    if (project->isArchived()) {
        items.push_back({Action::unarchive, "Unarchive"});
    } else {
        const ProjectOrderMenu order = projectOrderMenu(layoutOf(project->client()), *project);
        if (order.canMoveUp)
            items.push_back({Action::moveUp, "Move Up"});
        if (order.canMoveDown)
            items.push_back({Action::moveDown, "Move Down"});
        for (const ProjectOrderMenu::Destination& destination : order.moveToGroup)
            items.push_back({Action::moveToGroup, destination.title,
                             destination.isCurrent ? ProjectOrderMenu::currentSymbol : "", destination.group});
        items.push_back({Action::archive, "Archive"});
    }
    items.push_back({Action::remove, "Delete..."});
    return items;
}

std::vector<SidebarMenuItem> SidebarView::groupMenu(const SidebarRow::Id& row) const {
    const ScopeLayout layout = scopeOf(row).layout();
    for (std::size_t place = 0; place < layout.groups.size(); ++place) {
        if (layout.groups[place].group->id() != row.record)
            continue;
        const GroupHeaderRow head = groupHeader(layout, place, isCollapsed(row.record));
        std::vector<SidebarMenuItem> items{{Action::rename, "Rename"},
                                           {Action::toggle, head.isCollapsed ? "Expand" : "Collapse"}};
        if (head.canMoveUp)
            items.push_back({Action::moveUp, "Move Up"});
        if (head.canMoveDown)
            items.push_back({Action::moveDown, "Move Down"});
        items.push_back({Action::ungroup, "Ungroup"});
        return items;
    }
    return {};
}

ProjectScope SidebarView::scopeOf(const SidebarRow::Id& row) const {
    ModelContext& context = m_environment.main.context();
    std::optional<UUID> client;
    if (row.kind == RowKind::client) {
        client = row.record;
    } else if (const auto* group = row.kind == RowKind::group ? context.find<ProjectDivider>(row.record) : nullptr) {
        client = group->clientID();
    } else if (const auto* project = row.kind == RowKind::project ? context.find<Project>(row.record) : nullptr) {
        if (project->client() != nullptr)
            client = project->client()->id();
    }
    return {m_environment, client};
}

void SidebarView::perform(SidebarAction action, const SidebarRow::Id& row, const std::optional<UUID>& group) {
    ProjectScope scope = scopeOf(row);
    const auto direction = action == Action::moveUp ? Direction::up : Direction::down;
    switch (action) {
    case Action::newProject:
        m_sheet = SidebarSheet{.kind = SidebarSheet::Kind::project, .client = row.record};
        break;
    case Action::newGroup:
        m_renaming = scope.createGroup();
        if (row.kind == RowKind::client && m_expanded.insert(row.record).second)
            m_scene.set(setting("expandedClientIDs"), m_expanded);
        layOut();
        break;
    case Action::edit: {
        using enum SidebarSheet::Kind;
        m_sheet = SidebarSheet{row.kind == RowKind::client    ? client
                               : row.kind == RowKind::project ? project
                                                              : tag,
                               row.record};
        break;
    }
    case Action::archive:
    case Action::unarchive:
        setArchived(row, action == Action::archive);
        break;
    case Action::remove:
        m_atStake = row;
        break;
    case Action::rename:
        m_renaming = row.record;
        layOut();
        break;
    case Action::toggle:
        toggle(row);
        break;
    case Action::moveUp:
    case Action::moveDown:
        if (row.kind == RowKind::group)
            scope.moveGroup(row.record, direction);
        else
            scope.moveProject(row.record, direction);
        break;
    case Action::moveToGroup:
        scope.moveToGroup(row.record, group);
        break;
    case Action::ungroup:
        scope.ungroup(row.record);
        break;
    }
    m_observers.tell();
}

bool SidebarView::offers(const SidebarRow::Id& row, SidebarAction action) const {
    const std::vector<SidebarMenuItem> items = menu(row);
    return std::ranges::find(items, action, &SidebarMenuItem::action) != items.end();
}

std::optional<SidebarAction> SidebarView::renaming(const SidebarRow::Id& row) const {
    for (const Action action : {Action::rename, Action::edit})
        if (offers(row, action))
            return action;
    return std::nullopt;
}

bool SidebarView::move(const SidebarRow::Id& row, Direction direction) {
    const Action action = direction == Direction::up ? Action::moveUp : Action::moveDown;
    if (!offers(row, action))
        return false;
    perform(action, row);
    return true;
}

void SidebarView::setArchived(const SidebarRow::Id& row, bool archived) {
    const auto set = [&](auto* record, Date now) {
        if (record == nullptr)
            return;
        record->setArchived(archived);
        record->setUpdatedAt(now);
    };
    m_environment.history.perform(archived ? "Archive" : "Unarchive", [&](ModelContext& context, Date now) {
        if (row.kind == RowKind::client)
            set(context.find<Client>(row.record), now);
        else
            set(context.find<Project>(row.record), now);
    });
}

} // namespace quillorn
