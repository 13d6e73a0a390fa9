#pragma once

#include "Platform/Text.h"

#include <string_view>

namespace quillorn {

class ProjectTask;

/// What is typed into the search field of a task list.
class TaskTextSearch {
  public:
    TaskTextSearch(std::string_view typed, const Text& text);

    /// Nothing but white space narrows nothing.
    bool isBlank() const { return m_isBlank; }
    /// Whether title, description, source or the name of a tag contains it, in either case. True when it is blank.
    bool matches(const ProjectTask& task) const;

  private:
    bool m_isBlank;
    Text::Needle m_needle;
};

} // namespace quillorn
