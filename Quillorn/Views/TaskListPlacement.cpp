#include "Views/TaskListPlacement.h"

#include "Models/ProjectTask.h"

#include <algorithm>

namespace quillorn {

namespace {

bool isOf(const std::vector<std::uint32_t>& sections, std::uint32_t section) {
    return std::ranges::find(sections, section) != sections.end();
}

bool isMemberOf(const TaskListItem& item, std::uint32_t section) {
    return item.matches && isOf(item.sections, section);
}

} // namespace

TaskListPlacement::Role TaskListPlacement::roleOf(const TaskListItem& item) {
    if (!item.matches)
        return {};
    return {.parent = item.parent, .hasSubtasks = item.hasSubtasks, .isOpen = item.isOpen, .sections = item.sections};
}

bool TaskListPlacement::remove(const UUID& task, const Role& former) {
    if (former.sections.empty())
        return true;
    return isUsable() && !former.hasSubtasks &&
           std::ranges::all_of(former.sections, [&](std::uint32_t section) { return leave(task, section); });
}

bool TaskListPlacement::place(const TaskListItem& item, const Role& former) {
    const Role role = roleOf(item);
    if (role.sections.empty())
        return remove(item.id, former);
    if (!isUsable() || role.isOpen || former.isOpen)
        return false;
    const bool stays = role == former;
    if (!stays &&
        (role.hasSubtasks || former.hasSubtasks || (!former.sections.empty() && role.parent != former.parent)))
        return false;
    for (const std::uint32_t section : former.sections)
        if (!isOf(role.sections, section) && !leave(item.id, section))
            return false;
    return std::ranges::all_of(role.sections, [&](std::uint32_t section) {
        return isOf(former.sections, section) ? move(item, section) : enter(item, section);
    });
}

bool TaskListPlacement::leave(const UUID& task, std::uint32_t section) {
    if (!count(section, false))
        return false;
    if (const Place place = find(task, section))
        m_rows.remove(*place);
    return true;
}

bool TaskListPlacement::enter(const TaskListItem& item, std::uint32_t section) {
    if (!count(section, true))
        return false;
    if (!showsTasks(section))
        return true;
    const TaskListItem* parent = parentIn(item, section);
    if (parent != nullptr && !(parent->isOpen && find(parent->id, section)))
        return true;
    const TaskListItem* next = nextBeside(item, parent, section);
    if (next == nullptr && parent != nullptr)
        return false; // behind the guests of its parent, and whatever is open above them
    const Place place = next == nullptr ? endOf(section) : find(next->id, section);
    if (!place)
        return false;
    m_rows.insert(*place, taskRow(item, section));
    return true;
}

bool TaskListPlacement::move(const TaskListItem& item, std::uint32_t section) {
    const Place from = find(item.id, section);
    if (!from)
        return true; // out of sight
    const TaskListItem* parent = parentIn(item, section);
    const TaskListItem* next = nextBeside(item, parent, section);
    if (next == nullptr && parent != nullptr)
        return false;
    const Place before = next == nullptr ? endOf(section) : find(next->id, section);
    if (!before)
        return false;
    const std::size_t target = *before > *from ? *before - 1 : *before;
    if (target != *from)
        m_rows.move(*from, target);
    m_rows.change(target, taskRow(item, section));
    return true;
}

bool TaskListPlacement::count(std::uint32_t section, bool isMore) {
    if (section >= m_plan.members.size())
        return false;
    std::size_t& members = m_plan.members[section];
    if (members == (isMore ? 0 : 1))
        return false;
    members = isMore ? members + 1 : members - 1;
    if (m_plan.options.grouping == GroupBy::none)
        return true;
    TaskListRow head = headRow(m_sections, section, members, m_plan.options);
    const Place place = find(head.id);
    if (place)
        m_rows.change(*place, std::move(head));
    return place.has_value();
}

bool TaskListPlacement::showsTasks(std::uint32_t section) const {
    return m_plan.options.isDoneOpen || !isDoneSection(m_sections.head(section), m_plan.options);
}

/// The one that it stands under, as TaskListLayout has it.
const TaskListItem* TaskListPlacement::parentIn(const TaskListItem& item, std::uint32_t section) const {
    if (item.parent == 0)
        return nullptr;
    const auto found = m_items.find(item.parent);
    if (found == m_items.end() || !isMemberOf(*found->second, section))
        return nullptr;
    return m_plan.options.hidesUnderParents || found->second->isOpen ? found->second.get() : nullptr;
}

/// The next one in the order of the list that stands under the same parent, or under none.
const TaskListItem* TaskListPlacement::nextBeside(const TaskListItem& item, const TaskListItem* parent,
                                                  std::uint32_t section) const {
    const auto behind = std::ranges::find(m_sorted, &item);
    const auto found =
        std::find_if(behind == m_sorted.end() ? behind : behind + 1, m_sorted.end(), [&](const TaskListItem* other) {
            return isMemberOf(*other, section) && parentIn(*other, section) == parent;
        });
    return found == m_sorted.end() ? nullptr : *found;
}

TaskListPlacement::Place TaskListPlacement::find(const TaskListRow::Id& id) const {
    const auto found = std::ranges::find(m_rows.rows(), id, &TaskListRow::id);
    if (found == m_rows.rows().end())
        return std::nullopt;
    return static_cast<std::size_t>(found - m_rows.rows().begin());
}

/// Behind its last row. Its rows stand together.
std::size_t TaskListPlacement::endOf(std::uint32_t section) const {
    const auto last = std::find_if(m_rows.rows().rbegin(), m_rows.rows().rend(),
                                   [&](const TaskListRow& row) { return row.id.section == section; });
    return static_cast<std::size_t>(last.base() - m_rows.rows().begin());
}

} // namespace quillorn
