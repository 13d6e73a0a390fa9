#include "Views/TaskTextSearch.h"

#include "Models/ProjectTask.h"
#include "Models/Tag.h"

#include <algorithm>

namespace quillorn {

TaskTextSearch::TaskTextSearch(std::string_view typed, const Text& text)
    : m_isBlank(trimWhitespaceAndNewlines(typed).empty()),
      m_needle(text.needle(typed)) {}

bool TaskTextSearch::matches(const ProjectTask& task) const {
    const auto isIn = [this](const std::optional<std::string>& text) { return text && m_needle.isIn(*text); };
    return m_isBlank || m_needle.isIn(task.title()) || isIn(task.taskDescription()) || isIn(task.sourceTitle()) ||
           std::ranges::any_of(task.tags(), [this](const Tag* tag) { return m_needle.isIn(tag->name()); });
}

} // namespace quillorn
