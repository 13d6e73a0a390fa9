#include "Views/ProjectScope.h"

#include "Models/Client.h"
#include "Platform/Text.h"
#include "Store/MainContext.h"
#include "Views/EditHistory.h"

#include <algorithm>

namespace quillorn {

namespace {

/// The list in whose order the project stands.
const std::vector<Project*>& siblingsOf(const ScopeLayout& layout, const Project& project) {
    for (const ScopeLayout::Entry& entry : layout.groups)
        if (project.groupID() == entry.group->id())
            return entry.members;
    return layout.loose;
}

std::vector<ProjectDivider*> groupsOf(const ScopeLayout& layout) {
    std::vector<ProjectDivider*> groups;
    groups.reserve(layout.groups.size());
    for (const ScopeLayout::Entry& entry : layout.groups)
        groups.push_back(entry.group);
    return groups;
}

template <class Object>
std::size_t placeOf(const std::vector<Object*>& list, const UUID& id) {
    const auto found = std::ranges::find_if(list, [&](const Object* each) { return each->id() == id; });
    return static_cast<std::size_t>(found - list.begin());
}

template <class Object>
void moveOne(const std::vector<Object*>& list, std::size_t place, Direction direction) {
    if (direction == Direction::down)
        move(list, place, place + 2);
    else if (place > 0)
        move(list, place, place - 1);
}

Project* find(const ScopeLayout& layout, const UUID& id) {
    const auto isIt = [&](const Project* project) { return project->id() == id; };
    if (const auto found = std::ranges::find_if(layout.loose, isIt); found != layout.loose.end())
        return *found;
    for (const ScopeLayout::Entry& entry : layout.groups)
        if (const auto found = std::ranges::find_if(entry.members, isIt); found != entry.members.end())
            return *found;
    return nullptr;
}

std::string titleOf(const ProjectDivider& group) {
    return group.title().empty() ? "Group" : group.title();
}

} // namespace

GroupHeaderRow groupHeader(const ScopeLayout& layout, std::size_t place, bool isCollapsed) {
    const ScopeLayout::Entry& entry = layout.groups[place];
    return {
        .group = entry.group->id(),
        .title = titleOf(*entry.group),
        .memberCount = std::to_string(entry.members.size()),
        .isCollapsed = isCollapsed,
        .disclosureLabel = isCollapsed ? "Expand group" : "Collapse group",
        .canMoveUp = place > 0,
        .canMoveDown = place + 1 < layout.groups.size(),
    };
}

ProjectOrderMenu projectOrderMenu(const ScopeLayout& layout, const Project& project) {
    const std::vector<Project*>& siblings = siblingsOf(layout, project);
    const std::size_t place = placeOf(siblings, project.id());
    ProjectOrderMenu menu{.canMoveUp = place > 0 && place < siblings.size(),
                          .canMoveDown = place + 1 < siblings.size(),
                          .moveToGroup = {{std::nullopt, "None", &siblings == &layout.loose}}};
    for (const ScopeLayout::Entry& entry : layout.groups)
        menu.moveToGroup.push_back({entry.group->id(), titleOf(*entry.group), project.groupID() == entry.group->id()});
    return menu;
}

ScopeLayout ProjectScope::layout() const {
    ModelContext& context = m_environment.main.context();
    Query projects{.where = "isArchived = 0 AND client IS NULL"};
    Query groups{.where = "clientID IS NULL"};
    if (m_client) {
        projects = {.where = "isArchived = 0 AND client IN (SELECT key FROM Client WHERE id = ?)",
                    .values = {*m_client}};
        groups = {.where = "clientID = ?", .values = {*m_client}};
    }
    return scopeLayout(context.fetch<Project>(projects), context.fetch<ProjectDivider>(groups), m_environment.text);
}

ProjectDivider* ProjectScope::group(const ScopeLayout& layout, const UUID& id) const {
    const auto groups = groupsOf(layout);
    const std::size_t place = placeOf(groups, id);
    return place < groups.size() ? groups[place] : nullptr;
}

void ProjectScope::moveProject(const UUID& project, Direction direction) {
    m_environment.history.perform("Move Project", [&](ModelContext&, Date) {
        const ScopeLayout scope = layout();
        if (const Project* moved = find(scope, project)) {
            const std::vector<Project*>& siblings = siblingsOf(scope, *moved);
            moveOne(siblings, placeOf(siblings, project), direction);
        }
    });
}

void ProjectScope::moveToGroup(const UUID& project, const std::optional<UUID>& group) {
    m_environment.history.perform("Move Project", [&](ModelContext&, Date) {
        const ScopeLayout scope = layout();
        Project* moved = find(scope, project);
        const ProjectDivider* destination = group ? this->group(scope, *group) : nullptr;
        if (moved != nullptr && (!group || destination != nullptr))
            quillorn::moveProject(*moved, destination, scope);
    });
}

void ProjectScope::dropProject(const UUID& dragged, const UUID& target) {
    m_environment.history.perform("Move Project", [&](ModelContext&, Date) {
        const ScopeLayout scope = layout();
        Project* moved = find(scope, dragged);
        const Project* other = find(scope, target);
        if (moved == nullptr || other == nullptr || moved == other)
            return;
        std::vector<Project*> siblings = siblingsOf(scope, *other);
        const std::size_t place = placeOf(siblings, target);
        std::erase(siblings, moved);
        siblings.insert(siblings.begin() + static_cast<std::ptrdiff_t>(std::min(place, siblings.size())), moved);
        moved->setGroupID(other->groupID());
        renumber(siblings);
    });
}

void ProjectScope::moveGroup(const UUID& group, Direction direction) {
    m_environment.history.perform("Move Group", [&](ModelContext&, Date) {
        const auto groups = groupsOf(layout());
        moveOne(groups, placeOf(groups, group), direction);
    });
}

void ProjectScope::dropGroup(const UUID& dragged, const UUID& target) {
    m_environment.history.perform("Move Group", [&](ModelContext&, Date) {
        const ScopeLayout scope = layout();
        const ProjectDivider* moved = group(scope, dragged);
        const ProjectDivider* other = group(scope, target);
        if (moved != nullptr && other != nullptr)
            quillorn::moveGroup(*moved, *other, groupsOf(scope));
    });
}

std::optional<UUID> ProjectScope::createGroup() {
    const Client* client = m_client ? m_environment.main.context().find<Client>(*m_client) : nullptr;
    if (m_client && client == nullptr)
        return std::nullopt;
    std::optional<UUID> id;
    m_environment.history.perform("New Group", [&](ModelContext& context, Date now) {
        id = quillorn::createGroup(client, layout(), context, now).id();
    });
    return id;
}

void ProjectScope::renameGroup(const UUID& group, const std::string& title) {
    m_environment.history.perform("Rename Group", [&](ModelContext& context, Date) {
        if (auto* renamed = context.find<ProjectDivider>(group))
            renamed->setTitle(title);
    });
}

void ProjectScope::ungroup(const UUID& group) {
    m_environment.history.perform("Ungroup", [&](ModelContext& context, Date) {
        const ScopeLayout scope = layout();
        if (ProjectDivider* gone = this->group(scope, group))
            quillorn::ungroup(*gone, scope, context);
    });
}

} // namespace quillorn
