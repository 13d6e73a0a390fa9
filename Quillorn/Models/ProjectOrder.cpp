#include "Models/ProjectOrder.h"

#include "Models/Client.h"
#include "Platform/Text.h"
#include "Store/ModelContext.h"

#include <algorithm>
#include <limits>

namespace quillorn {

namespace {

const std::string& nameOf(const Project& project) {
    return project.name();
}
const std::string& nameOf(const ProjectDivider& group) {
    return group.title();
}

template <class Object>
void sortManually(std::vector<Object*>& objects, const Text& text) {
    std::sort(objects.begin(), objects.end(), [&](const Object* a, const Object* b) {
        if (a->sortOrder() != b->sortOrder())
            return a->sortOrder() < b->sortOrder();
        const int names = text.compareIgnoringCase(nameOf(*a), nameOf(*b));
        return names != 0 ? names < 0 : a->id() < b->id();
    });
}

/// Who belongs where, in the order of the arguments.
ScopeLayout unsortedLayout(const std::vector<Project*>& projects, const std::vector<ProjectDivider*>& groups) {
    ScopeLayout layout;
    for (ProjectDivider* group : groups)
        layout.groups.push_back({group, {}});
    for (Project* project : projects) {
        const auto isItsGroup = [&](const ScopeLayout::Entry& entry) {
            return project->groupID() == entry.group->id();
        };
        const auto entry = std::find_if(layout.groups.begin(), layout.groups.end(), isItsGroup);
        (entry == layout.groups.end() ? layout.loose : entry->members).push_back(project);
    }
    return layout;
}

template <class Object>
std::int64_t orderAfter(std::int64_t order, const Object& object) {
    constexpr auto last = std::numeric_limits<std::int64_t>::max();
    return std::max(order, object.sortOrder() == last ? last : object.sortOrder() + 1);
}

std::size_t placeOf(const ProjectDivider& group, const std::vector<ProjectDivider*>& groups) {
    const auto found =
        std::find_if(groups.begin(), groups.end(), [&](const auto* each) { return each->id() == group.id(); });
    return static_cast<std::size_t>(found - groups.begin());
}

const std::vector<Project*>& membersOf(const ProjectDivider& group, const ScopeLayout& layout) {
    static const std::vector<Project*> none;
    for (const ScopeLayout::Entry& entry : layout.groups)
        if (entry.group->id() == group.id())
            return entry.members;
    return none;
}

} // namespace

ScopeLayout scopeLayout(const std::vector<Project*>& projects, const std::vector<ProjectDivider*>& groups,
                        const Text& text) {
    std::vector<ProjectDivider*> sortedGroups = groups;
    sortManually(sortedGroups, text);
    ScopeLayout layout = unsortedLayout(projects, sortedGroups);
    sortManually(layout.loose, text);
    for (ScopeLayout::Entry& entry : layout.groups)
        sortManually(entry.members, text);
    return layout;
}

std::int64_t nextOrder(const ScopeLayout& layout) {
    // Without anything it is 0, whatever numbers below 0 may have been stored.
    if (layout.loose.empty() && layout.groups.empty())
        return 0;
    std::int64_t order = std::numeric_limits<std::int64_t>::min();
    for (const Project* project : layout.loose)
        order = orderAfter(order, *project);
    for (const ScopeLayout::Entry& entry : layout.groups)
        order = orderAfter(order, *entry.group);
    return order;
}

std::int64_t nextProjectOrder(const Client* client, ModelContext& context) {
    Query projects{.where = "NOT isArchived AND client IS NULL"};
    Query groups{.where = "clientID IS NULL"};
    if (client != nullptr) {
        projects = {.where = "NOT isArchived AND client = ?", .values = {client->key()}};
        groups = {.where = "clientID = ?", .values = {client->id()}};
    }
    return nextOrder(unsortedLayout(context.fetch<Project>(projects), context.fetch<ProjectDivider>(groups)));
}

void moveGroup(const ProjectDivider& dragged, const ProjectDivider& target, std::vector<ProjectDivider*> groups) {
    const std::size_t from = placeOf(dragged, groups);
    const std::size_t to = placeOf(target, groups);
    if (from == to || from == groups.size() || to == groups.size())
        return;
    ProjectDivider* moved = groups[from];
    groups.erase(groups.begin() + static_cast<std::ptrdiff_t>(from));
    groups.insert(groups.begin() + static_cast<std::ptrdiff_t>(to), moved);
    renumber(groups);
}

void moveProject(Project& project, const ProjectDivider* destination, const ScopeLayout& layout) {
    const std::optional<UUID> group = destination != nullptr ? std::optional(destination->id()) : std::nullopt;
    if (project.groupID() == group)
        return;
    std::int64_t order = 0;
    if (destination == nullptr)
        order = nextOrder(layout);
    else
        for (const Project* member : membersOf(*destination, layout))
            order = orderAfter(order, *member);
    project.setGroupID(group);
    project.setSortOrder(order);
}

void ungroup(ProjectDivider& group, const ScopeLayout& layout, ModelContext& context) {
    std::int64_t order = nextOrder(layout);
    for (Project* member : membersOf(group, layout)) {
        member->setGroupID(std::nullopt);
        member->setSortOrder(order++);
    }
    context.remove(group);
}

ProjectDivider& createGroup(const Client* client, const ScopeLayout& layout, ModelContext& context, Date now) {
    return context.insert<ProjectDivider>(
        ProjectDivider::Arguments{
            .title = {},
            .clientID = client != nullptr ? std::optional(client->id()) : std::nullopt,
            .sortOrder = nextOrder(layout),
        },
        now);
}

} // namespace quillorn
