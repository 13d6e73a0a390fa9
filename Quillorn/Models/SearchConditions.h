#pragma once

#include "Platform/Text.h"
#include "Store/ModelContext.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quillorn {

/// Gathers the conditions of a query; all of them hold together.
class SearchConditions {
  public:
    void add(const std::string& condition) { m_query.where += (m_query.where.empty() ? "" : " AND ") + condition; }
    /// `condition` has one "?", which stands for the value.
    void add(const std::string& condition, SQLValue value) {
        add(condition);
        m_query.values.push_back(std::move(value));
    }

    /// Leaves out what belongs to a hidden project by the to-one column "project".
    void addProjectNotHidden();
    /// The same by the column "task", where the task's project is hidden.
    void addTaskNotHidden();
    /// Keeps what belongs to the project of that id by the column "project".
    void addProject(const UUID& id) { add("project IN (SELECT key FROM Project WHERE id = ?)", id); }

    Query query() && { return std::move(m_query); }

  private:
    Query m_query;
};

/// Keeps the objects that have `part` in one of these texts; all of them where there is no part.
template <class Object, class... Field>
void keepContaining(std::vector<Object*>& objects, const Text& text, const std::optional<std::string>& part,
                    Field Object::*... field) {
    if (!part)
        return;
    const Text::Needle needle = text.needle(*part);
    std::erase_if(objects, [&](const Object* object) { return !(needle.isIn((object->*field)()) || ...); });
}

} // namespace quillorn
