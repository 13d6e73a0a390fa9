#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace quillorn {

class ProjectTask;
class Text;

/// How a task list is sorted.
enum class SortOrder : std::uint8_t { dueDate, priority, title, createdAt };

inline constexpr SortOrder sortOrders[] = {SortOrder::dueDate, SortOrder::priority, SortOrder::title,
                                           SortOrder::createdAt};

/// As it is shown and kept: "Due Date", "Priority", "Title", "Created".
std::string_view rawValue(SortOrder order);
std::optional<SortOrder> sortOrderFromRaw(std::string_view raw);

/// The earliest date first and none last, the highest priority first, titles as a file list would show them, or the
/// newest first.
bool isBefore(const ProjectTask& a, const ProjectTask& b, SortOrder order, const Text& text);

/// Leaves equals in their order.
void sortTasks(std::vector<ProjectTask*>& tasks, SortOrder order, const Text& text);

} // namespace quillorn
