#include "Models/Client.h"
#include "Store/MainContext.h"
#include "Views/SidebarView.h"
#include "Views/TaskEdits.h"

#include <algorithm>

namespace quillorn {

using RowKind = SidebarRow::Kind;

namespace {

using DropPlace = SidebarView::DropPlace;

/// Where in the list the two stand; absent where one of them is not in it.
template <class Object>
std::optional<DropPlace> dropPlaceIn(const std::vector<Object*>& list, const UUID& dragged, const UUID& target) {
    const auto find = [&](const UUID& id) {
        return std::ranges::find_if(list, [&](const Object* each) { return each->id() == id; });
    };
    const auto from = find(dragged);
    const auto to = find(target);
    if (from == list.end() || to == list.end())
        return std::nullopt;
    return from < to ? DropPlace::below : DropPlace::above;
}

bool holdsProject(const ScopeLayout& layout, const UUID& project) {
    const auto isIt = [&](const Project* each) { return each->id() == project; };
    return std::ranges::any_of(layout.loose, isIt) ||
           std::ranges::any_of(layout.groups, [&](const ScopeLayout::Entry& entry) {
               return std::ranges::any_of(entry.members, isIt);
           });
}

DropPlace dropPlaceOfProject(const ScopeLayout& layout, const UUID& dragged, const SidebarRow::Id& target) {
    if (!holdsProject(layout, dragged))
        return DropPlace::none;
    if (target.kind == RowKind::group) {
        const auto group = std::ranges::find_if(
            layout.groups, [&](const ScopeLayout::Entry& entry) { return entry.group->id() == target.record; });
        const bool isThere = group != layout.groups.end() &&
                             std::ranges::any_of(group->members, [&](auto* each) { return each->id() == dragged; });
        return isThere ? DropPlace::none : DropPlace::into;
    }
    for (const ScopeLayout::Entry& entry : layout.groups)
        if (const auto place = dropPlaceIn(entry.members, dragged, target.record))
            return *place;
    return dropPlaceIn(layout.loose, dragged, target.record).value_or(DropPlace::above);
}

} // namespace

DropPlace SidebarView::dropPlace(const SidebarRow::Id& dragged, const SidebarRow::Id& target) const {
    const bool isOrdered = target.kind == RowKind::project || target.kind == RowKind::group;
    const bool isArchived = dragged.section == SidebarSection::archived || target.section == SidebarSection::archived;
    if (dragged == target || !isOrdered || isArchived)
        return DropPlace::none;
    const ScopeLayout layout = scopeOf(target).layout();
    if (dragged.kind == RowKind::project)
        return dropPlaceOfProject(layout, dragged.record, target);
    if (dragged.kind != RowKind::group || target.kind != RowKind::group)
        return DropPlace::none;
    std::vector<const ProjectDivider*> groups;
    groups.reserve(layout.groups.size());
    for (const ScopeLayout::Entry& entry : layout.groups)
        groups.push_back(entry.group);
    return dropPlaceIn(groups, dragged.record, target.record).value_or(DropPlace::none);
}

void SidebarView::drop(const SidebarRow::Id& dragged, const SidebarRow::Id& target) {
    if (dropPlace(dragged, target) == DropPlace::none)
        return;
    ProjectScope scope = scopeOf(target);
    if (dragged.kind == RowKind::group)
        scope.dropGroup(dragged.record, target.record);
    else if (target.kind == RowKind::group)
        scope.moveToGroup(dragged.record, target.record);
    else
        scope.dropProject(dragged.record, target.record);
}

bool SidebarView::takesTasks(const SidebarRow::Id& row) {
    return row.kind == RowKind::project || row.kind == RowKind::tag;
}

void SidebarView::dropTasks(const std::vector<UUID>& tasks, const SidebarRow::Id& row) {
    TaskEdits edits(m_environment);
    if (row.kind == RowKind::project)
        edits.moveToProject(tasks, row.record);
    else if (row.kind == RowKind::tag)
        edits.setTag(tasks, row.record, true);
}

} // namespace quillorn
