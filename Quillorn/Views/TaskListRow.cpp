#include "Views/TaskListRow.h"

namespace quillorn {

const TaskRowWords& TaskRowText::operator*() const {
    static const TaskRowWords none;
    if (m_state && !m_state->words && m_state->maker != nullptr)
        m_state->maker->makeWords(m_state->task);
    return isMade() ? *m_state->words : none;
}

} // namespace quillorn
