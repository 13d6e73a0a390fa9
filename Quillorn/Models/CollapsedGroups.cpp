#include "Models/CollapsedGroups.h"

#include <algorithm>

namespace quillorn {

CollapsedGroups::CollapsedGroups(std::string_view text) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(','), text.size());
        const auto id = UUID::parse(text.substr(0, end));
        if (id && !contains(*id))
            m_ids.push_back(*id);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

bool CollapsedGroups::contains(const UUID& group) const {
    return std::find(m_ids.begin(), m_ids.end(), group) != m_ids.end();
}

void CollapsedGroups::toggle(const UUID& group) {
    if (std::erase(m_ids, group) == 0)
        m_ids.push_back(group);
}

std::string CollapsedGroups::text() const {
    std::string joined;
    for (const UUID& id : m_ids)
        joined += (joined.empty() ? "" : ",") + id.string();
    return joined;
}

} // namespace quillorn
