#pragma once

#include "Platform/UUID.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
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

/// A row of a task list. Small, so that a list of thousands can make room in its middle; equal words are shared.
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
    std::shared_ptr<const TaskRowWords> words;

    Kind kind() const { return id.kind; }

    friend bool operator==(const TaskListRow& a, const TaskListRow& b) {
        return a.id == b.id && a.depth == b.depth && a.disclosure == b.disclosure &&
               (a.words == b.words || *a.words == *b.words);
    }
};

} // namespace quillorn

template <>
struct std::hash<quillorn::TaskListRow::Id> {
    std::size_t operator()(const quillorn::TaskListRow::Id& id) const noexcept {
        return std::hash<quillorn::UUID>()(id.task) ^ (std::size_t{id.section} << 8U) ^
               static_cast<std::size_t>(id.kind);
    }
};
