#pragma once

#include "Models/Project.h"
#include "Models/ProjectDivider.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace quillorn {

class ModelContext;
class Text;

// The manual order of projects and groups. A scope is what is shown together: the projects of one client, or those
// without one. Nothing here saves.

/// An object with a place in a manual order.
template <class Object>
concept ManuallyOrdered = requires(Object object, std::int64_t order) {
    { object.sortOrder() } -> std::same_as<std::int64_t>;
    object.setSortOrder(order);
};

/// A scope as it is shown: loose projects and groups share the top level, each group has an order of its own inside.
struct ScopeLayout {
    struct Entry {
        ProjectDivider* group;
        std::vector<Project*> members;
    };

    std::vector<Project*> loose;
    /// Also those without members.
    std::vector<Entry> groups;
};

/// All in their order: by number, on a tie by name in the user's locale, then by id. A project whose group is not among
/// `groups` is loose.
ScopeLayout scopeLayout(const std::vector<Project*>& projects, const std::vector<ProjectDivider*>& groups,
                        const Text& text);

/// The number that comes after everything at the top level; members of groups don't count.
std::int64_t nextOrder(const ScopeLayout& layout);
/// The number for a project that is new in the scope of `client` (null for none), over what is stored and not archived.
std::int64_t nextProjectOrder(const Client* client, ModelContext& context);

/// Gives each object its index as its number; those that have it already are not touched.
template <ManuallyOrdered Object>
void renumber(const std::vector<Object*>& list) {
    for (std::size_t index = 0; index < list.size(); ++index)
        list[index]->setSortOrder(static_cast<std::int64_t>(index)); // compares before it assigns
}

/// Moves the object at `index` in front of the one now at `offset`, or to the end for the size of the list, and
/// renumbers. One place up is `index - 1`, one place down `index + 2`.
template <ManuallyOrdered Object>
void move(std::vector<Object*> list, std::size_t index, std::size_t offset) {
    if (index >= list.size() || offset > list.size())
        return;
    Object* moved = list[index];
    list.insert(list.begin() + static_cast<std::ptrdiff_t>(offset), moved);
    list.erase(list.begin() + static_cast<std::ptrdiff_t>(offset <= index ? index + 1 : index));
    renumber(list);
}

/// Puts `dragged` in the place of `target`, which makes room. Nothing happens for a group on itself, and for groups
/// that are not in the list.
void moveGroup(const ProjectDivider& dragged, const ProjectDivider& target, std::vector<ProjectDivider*> groups);

/// Puts the project last in `destination`, or last at the top level for null. Nothing happens when it is there already.
void moveProject(Project& project, const ProjectDivider* destination, const ScopeLayout& layout);

/// Makes the members loose, last at the top level in the order they have, and removes the group.
void ungroup(ProjectDivider& group, const ScopeLayout& layout, ModelContext& context);

/// A group without a name yet, last in the scope of `client` (null for none).
ProjectDivider& createGroup(const Client* client, const ScopeLayout& layout, ModelContext& context, Date now);

} // namespace quillorn
