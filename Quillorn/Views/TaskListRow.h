#pragma once

#include "Platform/UUID.h"
#include "Store/Relation.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quillorn {

/// A tag as a row shows it.
struct TagChip {
    std::string name, color;

    friend bool operator==(const TagChip&, const TagChip&) = default;
};

/// The words of a row, ready to show; texts are empty where there is nothing to say. Of a section's head there are
/// title, symbol or mark, colour and count.
struct TaskRowWords {
    std::string title;
    /// The symbol of the status.
    std::string symbol{};
    /// The emoji of the priority.
    std::string mark{};
    std::string statusLabel{};
    std::string projectName{};
    /// Of the project.
    std::string color{};
    /// "Today", "Tomorrow", "Overdue" or the day; the time beside it where it means something.
    std::string dueText{};
    std::string dueTimeText{};
    /// "2/5".
    std::string subtasksText{};
    /// Number of comments, or of a section's tasks.
    std::string countText{};
    std::string timeText{};
    std::vector<TagChip> tags{};
    bool isCompleted = false;
    bool isOverdue = false;

    friend bool operator==(const TaskRowWords&, const TaskRowWords&) = default;
};

/// The words of a row, which may be made no sooner than somebody asks for them: of thousands of rows few are looked at.
/// Copies share them.
class TaskRowText {
  public:
    /// Who can make them.
    class Maker {
      public:
        /// Gives this task's texts their words by give(), and those of others where that takes no longer. They stay as
        /// they are where it can't.
        virtual void makeWords(RowKey task) = 0;

      protected:
        ~Maker() = default;
    };

    TaskRowText() = default;
    explicit TaskRowText(TaskRowWords words) : m_state(std::make_shared<State>(State{.words = std::move(words)})) {}
    /// To be made by `maker`, which outlives whoever asks.
    TaskRowText(Maker& maker, RowKey task) : m_state(std::make_shared<State>(State{.maker = &maker, .task = task})) {}

    /// Empty where they can't be made.
    const TaskRowWords& operator*() const;
    const TaskRowWords* operator->() const { return &**this; }
    bool isMade() const { return m_state && m_state->words; }
    void give(TaskRowWords words) const { m_state->words = std::move(words); }

    /// What nobody has asked for is equal to itself alone.
    friend bool operator==(const TaskRowText& a, const TaskRowText& b) {
        return a.m_state == b.m_state || (a.isMade() && b.isMade() && *a == *b);
    }

  private:
    struct State {
        std::optional<TaskRowWords> words{};
        Maker* maker = nullptr;
        RowKey task = 0;
    };

    std::shared_ptr<State> m_state;
};

/// A row of a task list. Small, so that a list of thousands can make room in its middle.
struct TaskListRow {
    enum class Kind : std::uint8_t { section, doneToggle, task };
    enum class Disclosure : std::uint8_t { none, closed, open };

    /// With grouping by tags a task has a row in several sections.
    struct Id {
        UUID task; // nil for the rows of a section itself
        std::uint32_t section = 0;
        Kind kind = Kind::task;

        friend bool operator==(const Id&, const Id&) = default;
    };

    Id id;
    std::uint32_t depth = 0;
    Disclosure disclosure = Disclosure::none;
    TaskRowText words;

    Kind kind() const { return id.kind; }

    friend bool operator==(const TaskListRow&, const TaskListRow&) = default;
};

} // namespace quillorn

template <>
struct std::hash<quillorn::TaskListRow::Id> {
    std::size_t operator()(const quillorn::TaskListRow::Id& id) const noexcept {
        return std::hash<quillorn::UUID>()(id.task) ^ (std::size_t{id.section} << 8U) ^
               static_cast<std::size_t>(id.kind);
    }
};
