#include "Views/TaskTextSearch.h"

#include "Models/ProjectTask.h"
#include "Models/RestrictedStatement.h"
#include "Models/Tag.h"

#include <algorithm>

namespace quillorn {

namespace {

/// No part of any UTF-8, so that nothing is found across two texts.
constexpr char separator = '\xFF';

} // namespace

TaskTextSearch::TaskTextSearch(std::string_view typed, const Text& text)
    : m_text(&text),
      m_key(trimWhitespaceAndNewlines(typed).empty() ? std::string() : text.searchKey(typed)) {}

bool TaskTextSearch::matches(const ProjectTask& task) const {
    return isBlank() || isInSearched(searched(task)) ||
           std::ranges::any_of(task.tags(), [this](const Tag* tag) { return isInName(*tag); });
}

std::string TaskTextSearch::searched(const ProjectTask& task) const {
    std::string all = m_text->searchKey(task.title());
    for (const auto& text : {&ProjectTask::taskDescription, &ProjectTask::sourceTitle})
        if (const auto& value = (task.*text)())
            (all += separator) += m_text->searchKey(*value);
    return all;
}

bool TaskTextSearch::isInName(const Tag& tag) const {
    return contains(m_text->searchKey(tag.name()), m_key);
}

std::vector<RowKey> TaskTextSearch::taggedTasks(ModelContext& context) const {
    std::vector<Tag*> tags = context.fetch<Tag>();
    std::erase_if(tags, [this](const Tag* tag) { return !isInName(*tag); });
    std::vector<RowKey> tasks;
    if (isBlank() || tags.empty())
        return tasks;
    std::vector<RowKey> keys = keysOf(tags);
    std::ranges::sort(keys);
    const StatementLoan rows = restrictedStatement(context, "SELECT task, tag FROM ProjectTask_Tag WHERE tag{}", keys);
    while (rows->step())
        if (std::ranges::binary_search(keys, rows->integer(1))) // others may come along
            tasks.push_back(rows->integer(0));
    std::ranges::sort(tasks);
    return tasks;
}

} // namespace quillorn
