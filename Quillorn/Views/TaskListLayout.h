#pragma once

#include "Store/Held.h"
#include "Views/SmartListDashboard.h"
#include "Views/TaskGrouping.h"
#include "Views/TaskListRow.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace quillorn {

/// What a list knows of a task: enough to put it in its place without touching the record.
struct TaskListItem {
    Held<ProjectTask> task;
    UUID id{};
    TaskRowText words;
    RowKey parent = 0;
    std::uint32_t depth = 0;
    /// Whether there are subtasks to disclose.
    bool hasSubtasks = false;
    bool isOpen = false;
    /// Whether search and meeting let it through.
    bool matches = true;
    /// What search looks at, once it has.
    std::optional<std::string> searched{};
    std::vector<std::uint32_t> sections{};
    TaskTally::Share share{};
    /// While it is open: subtasks that are no members of the list themselves, in their order.
    std::vector<std::unique_ptr<TaskListItem>> guests{};

    mutable std::uint32_t pass = 0;    // the section whose tree it was last part of
    mutable std::uint32_t reached = 0; // and in which it has been put
};

/// The heads of sections under small numbers.
class TaskSections {
  public:
    /// The number of that key; the head may have been renamed.
    std::uint32_t number(const SectionHead& head);
    const SectionHead& head(std::uint32_t number) const { return m_heads[number]; }
    std::size_t size() const { return m_heads.size(); }
    /// Another number whenever a head has come or changed.
    std::uint32_t revision() const { return m_revision; }
    std::vector<std::uint32_t> inOrder(const Text& text) const;
    void clear();

  private:
    std::vector<SectionHead> m_heads;
    std::uint32_t m_revision = 0;
    std::unordered_map<std::string, std::uint32_t> m_numbers;
};

/// What makes rows of items.
struct TaskListOptions {
    GroupBy grouping = GroupBy::none;
    bool isDoneOpen = false;
    /// Whether subtasks stay out of sight under a parent that is closed. Otherwise they have a row of their own.
    bool hidesUnderParents = false;
};

using TaskListItems = std::unordered_map<RowKey, std::unique_ptr<TaskListItem>>;

/// Whether these are the tasks of finished work, which stand behind a row.
bool isDoneSection(const SectionHead& head, const TaskListOptions& options);
/// The row over a section of so many tasks.
TaskListRow headRow(const TaskSections& sections, std::uint32_t section, std::size_t count,
                    const TaskListOptions& options);
/// The row of an item within a section.
TaskListRow taskRow(const TaskListItem& item, std::uint32_t section);

/// What was laid out, as far as TaskListPlacement needs it beside the rows.
struct TaskListPlan {
    TaskListOptions options{};
    /// For each section the number of its tasks, also of those that are out of sight.
    std::vector<std::size_t> members{};
    /// Of the sections' heads.
    std::uint32_t revision = 0;
    /// Whether there are tasks above each other in a circle, which stand where no order puts them.
    bool hasCircles = false;
};

/// Makes rows of items: sections with their heads, subtasks under parents, done work behind its row.
class TaskListLayout {
  public:
    /// `pass` counts the sections that were laid out; it belongs to the items.
    TaskListLayout(const TaskListItems& items, const TaskSections& sections, const Text& text, TaskListOptions options,
                   std::uint32_t& pass)
        : m_items(items),
          m_sections(sections),
          m_text(text),
          m_plan{.options = options, .members = {}, .revision = sections.revision()},
          m_pass(pass) {}

    /// `sorted` are all items in the order of the list.
    std::vector<TaskListRow> rows(std::span<TaskListItem* const> sorted);
    /// Of these rows.
    TaskListPlan plan() && { return std::move(m_plan); }

  private:
    using Section = std::vector<const TaskListItem*>;

    void addTasks(std::uint32_t section, const Section& tasks);
    const TaskListItem* parentIn(const TaskListItem& item, std::uint32_t pass) const;
    void add(const TaskListItem& item, std::uint32_t section, bool isVisible);
    void addGuests(const TaskListItem& item, std::uint32_t section);

    const TaskListItems& m_items;
    const TaskSections& m_sections;
    const Text& m_text;
    TaskListPlan m_plan;
    std::vector<TaskListRow> m_rows;
    std::unordered_map<RowKey, Section> m_children; // of the section at work
    std::uint32_t& m_pass;
};

} // namespace quillorn
