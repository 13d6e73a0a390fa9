#include "Views/TaskListLayout.h"

#include "Models/ProjectTask.h"
#include "Platform/Text.h"
#include "Views/TaskListTexts.h"

#include <algorithm>
#include <numeric>

namespace quillorn {

std::uint32_t TaskSections::number(const SectionHead& head) {
    const auto [place, isNew] = m_numbers.try_emplace(head.key, static_cast<std::uint32_t>(m_heads.size()));
    if (isNew)
        m_heads.push_back(head);
    else if (m_heads[place->second] == head)
        return place->second;
    m_heads[place->second] = head;
    ++m_revision;
    return place->second;
}

std::vector<std::uint32_t> TaskSections::inOrder(const Text& text) const {
    std::vector<std::uint32_t> numbers(m_heads.size());
    std::iota(numbers.begin(), numbers.end(), 0U);
    std::ranges::sort(numbers,
                      [&](std::uint32_t a, std::uint32_t b) { return isBefore(m_heads[a], m_heads[b], text); });
    return numbers;
}

void TaskSections::clear() {
    m_heads.clear();
    m_numbers.clear();
}

bool isDoneSection(const SectionHead& head, const TaskListOptions& options) {
    return options.grouping == GroupBy::status && head.rank == static_cast<int>(TaskStatus::done);
}

TaskListRow headRow(const TaskSections& sections, std::uint32_t section, std::size_t count,
                    const TaskListOptions& options) {
    const SectionHead& head = sections.head(section);
    TaskRowWords words{.title = head.title,
                       .symbol = head.symbol,
                       .mark = head.mark,
                       .color = head.color,
                       .countText = std::to_string(count)};
    auto kind = TaskListRow::Kind::section;
    auto disclosure = TaskListRow::Disclosure::none;
    if (isDoneSection(head, options)) {
        kind = TaskListRow::Kind::doneToggle;
        words.title = doneToggleTitle(options.isDoneOpen, count);
        disclosure = options.isDoneOpen ? TaskListRow::Disclosure::open : TaskListRow::Disclosure::closed;
    }
    return {.id = {.task = {}, .section = section, .kind = kind},
            .disclosure = disclosure,
            .words = TaskRowText(std::move(words))};
}

TaskListRow taskRow(const TaskListItem& item, std::uint32_t section) {
    using enum TaskListRow::Disclosure;
    return {.id = {.task = item.id, .section = section, .kind = TaskListRow::Kind::task},
            .depth = item.depth,
            .disclosure = !item.hasSubtasks ? none
                          : item.isOpen     ? open
                                            : closed,
            .words = item.words};
}

std::vector<TaskListRow> TaskListLayout::rows(std::span<TaskListItem* const> sorted) {
    std::vector<Section> members(m_sections.size());
    for (const TaskListItem* item : sorted)
        if (item->matches)
            for (const std::uint32_t section : item->sections)
                members[section].push_back(item);
    m_plan.members.reserve(members.size());
    for (const Section& tasks : members)
        m_plan.members.push_back(tasks.size());
    m_rows.reserve(sorted.size() + m_sections.size());
    for (const std::uint32_t section : m_sections.inOrder(m_text)) {
        if (members[section].empty())
            continue;
        if (m_plan.options.grouping != GroupBy::none)
            m_rows.push_back(headRow(m_sections, section, members[section].size(), m_plan.options));
        if (m_plan.options.isDoneOpen || !isDoneSection(m_sections.head(section), m_plan.options))
            addTasks(section, members[section]);
    }
    return std::move(m_rows);
}

const TaskListItem* TaskListLayout::parentIn(const TaskListItem& item, std::uint32_t pass) const {
    if (item.parent == 0)
        return nullptr;
    const auto found = m_items.find(item.parent);
    return found != m_items.end() && found->second->pass == pass ? found->second.get() : nullptr;
}

void TaskListLayout::addTasks(std::uint32_t section, const Section& tasks) {
    ++m_pass;
    m_children.clear();
    for (const TaskListItem* item : tasks)
        item->pass = m_pass;
    Section roots;
    for (const TaskListItem* item : tasks) {
        const TaskListItem* parent = parentIn(*item, m_pass);
        if (parent != nullptr && (m_plan.options.hidesUnderParents || parent->isOpen))
            m_children[item->parent].push_back(item);
        else
            roots.push_back(item);
    }
    for (const TaskListItem* item : roots)
        add(*item, section, true);
    // Tasks that stand above each other in a circle, as only a damaged store has them, have no root.
    if (!m_children.empty())
        for (const TaskListItem* item : tasks)
            if (item->reached != m_pass) {
                m_plan.hasCircles = true;
                add(*item, section, true);
            }
}

void TaskListLayout::add(const TaskListItem& item, std::uint32_t section, bool isVisible) {
    if (item.reached == m_pass)
        return;
    item.reached = m_pass;
    if (isVisible)
        m_rows.push_back(taskRow(item, section));
    if (!item.hasSubtasks)
        return;
    if (const auto children = m_children.find(item.task->key()); children != m_children.end())
        for (const TaskListItem* child : children->second)
            add(*child, section, isVisible && item.isOpen);
    if (isVisible)
        addGuests(item, section);
}

void TaskListLayout::addGuests(const TaskListItem& item, std::uint32_t section) {
    for (const auto& guest : item.guests) {
        m_rows.push_back(taskRow(*guest, section));
        addGuests(*guest, section);
    }
}

} // namespace quillorn
