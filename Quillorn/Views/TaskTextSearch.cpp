#include "Views/TaskTextSearch.h"

#include "Models/ProjectTask.h"
#include "Models/Tag.h"

namespace quillorn {

namespace {

/// No part of any UTF-8, so that nothing is found across two texts.
constexpr char separator = '\xFF';

} // namespace

TaskTextSearch::TaskTextSearch(std::string_view typed, const Text& text)
    : m_text(&text),
      m_key(trimWhitespaceAndNewlines(typed).empty() ? std::string() : text.searchKey(typed)) {}

bool TaskTextSearch::matches(const ProjectTask& task) const {
    return isBlank() || isInSearched(searched(task));
}

std::string TaskTextSearch::searched(const ProjectTask& task) const {
    std::string all = m_text->searchKey(task.title());
    const auto add = [&](std::string_view text) { (all += separator) += m_text->searchKey(text); };
    for (const auto& text : {&ProjectTask::taskDescription, &ProjectTask::sourceTitle})
        if (const auto& value = (task.*text)())
            add(*value);
    for (const Tag* tag : task.tags())
        add(tag->name());
    return all;
}

} // namespace quillorn
