#pragma once

#include "Views/ObservableList.h"
#include "Views/TaskListLayout.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace quillorn {

/// Puts single tasks in their places among rows that are laid out, for as long as the tree around them stays as it is.
/// Where it can't, everything has to be laid out again.
class TaskListPlacement {
  public:
    /// What a task has to do with the rows.
    struct Role {
        RowKey parent = 0;
        bool hasSubtasks = false;
        bool isOpen = false;
        /// None for a task that is not there, or that search and meeting leave out.
        std::vector<std::uint32_t> sections{};

        friend bool operator==(const Role&, const Role&) = default;
    };
    static Role roleOf(const TaskListItem& item);

    /// `plan` and `rows` follow what is done here; `sorted` and `items` are the list as it is to be.
    TaskListPlacement(ObservableList<TaskListRow>& rows, TaskListPlan& plan, const TaskListItems& items,
                      std::span<TaskListItem* const> sorted, const TaskSections& sections)
        : m_rows(rows),
          m_plan(plan),
          m_items(items),
          m_sorted(sorted),
          m_sections(sections) {}

    /// Takes away the rows of a task that is gone. False when it can't be done alone.
    bool remove(const UUID& task, const Role& former);
    /// Of several tasks the last one in the order of the list goes first, so that the one behind each stands right.
    /// False when it can't be done alone.
    bool place(const TaskListItem& item, const Role& former);

  private:
    using Place = std::optional<std::size_t>;

    bool isUsable() const { return !m_plan.hasCircles && m_plan.revision == m_sections.revision(); }
    bool enter(const TaskListItem& item, std::uint32_t section);
    bool leave(const UUID& task, std::uint32_t section);
    bool move(const TaskListItem& item, std::uint32_t section);
    /// One more or one less in the section; false when that would bring or take away its head.
    bool count(std::uint32_t section, bool isMore);
    bool showsTasks(std::uint32_t section) const;

    const TaskListItem* parentIn(const TaskListItem& item, std::uint32_t section) const;
    const TaskListItem* nextBeside(const TaskListItem& item, const TaskListItem* parent, std::uint32_t section) const;
    Place find(const TaskListRow::Id& id) const;
    Place find(const UUID& task, std::uint32_t section) const { return find({task, section, TaskListRow::Kind::task}); }
    std::size_t endOf(std::uint32_t section) const;

    ObservableList<TaskListRow>& m_rows;
    TaskListPlan& m_plan;
    const TaskListItems& m_items;
    std::span<TaskListItem* const> m_sorted;
    const TaskSections& m_sections;
};

} // namespace quillorn
