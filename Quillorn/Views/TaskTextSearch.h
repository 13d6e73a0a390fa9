#pragma once

#include "Platform/Text.h"
#include "Store/Relation.h"

#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

class ModelContext;
class ProjectTask;
class Tag;

/// What is typed into the search field of a task list.
class TaskTextSearch {
  public:
    TaskTextSearch(std::string_view typed, const Text& text);

    /// Nothing but white space narrows nothing.
    bool isBlank() const { return m_key.empty(); }
    /// Whether title, description, source or the name of a tag contains it, in either case. True when it is blank.
    bool matches(const ProjectTask& task) const;

    /// All that is searched of a task itself, in a form that is quick to search. Good until the task changes.
    std::string searched(const ProjectTask& task) const;
    /// As of the task that this was made of, apart from its tags.
    bool isInSearched(std::string_view searched) const { return contains(searched, m_key); }
    /// The tasks with a tag whose name contains it, as last saved; sorted.
    std::vector<RowKey> taggedTasks(ModelContext& context) const;
    /// Whether the other one finds whatever this one finds.
    bool isWithin(const TaskTextSearch& other) const { return contains(m_key, other.m_key); }

  private:
    bool isInName(const Tag& tag) const;
    static bool contains(std::string_view text, std::string_view part) {
        return text.find(part) != std::string_view::npos;
    }

    const Text* m_text;
    std::string m_key; // empty when it is blank
};

} // namespace quillorn
