#include "Support/RecordingLog.h"

#include <algorithm>

namespace quillorn {

void RecordingLog::log(std::string_view line) {
    const std::lock_guard lock(m_mutex);
    m_lines.emplace_back(line);
}

std::vector<std::string> RecordingLog::lines() const {
    const std::lock_guard lock(m_mutex);
    return m_lines;
}

bool RecordingLog::contains(std::string_view part) const {
    const std::lock_guard lock(m_mutex);
    return std::any_of(m_lines.begin(), m_lines.end(),
                       [&](const std::string& line) { return line.find(part) != std::string::npos; });
}

void RecordingLog::clear() {
    const std::lock_guard lock(m_mutex);
    m_lines.clear();
}

} // namespace quillorn
