#pragma once

#include "Platform/SystemLog.h"

#include <algorithm>
#include <mutex>
#include <string>
#include <vector>

namespace quillorn {

/// Keeps what was logged.
class RecordingLog final : public SystemLog {
  public:
    void log(std::string_view line) override {
        const std::lock_guard lock(m_mutex);
        m_lines.emplace_back(line);
    }
    std::vector<std::string> lines() const {
        const std::lock_guard lock(m_mutex);
        return m_lines;
    }
    /// Whether some line contains `part`.
    bool contains(std::string_view part) const {
        const auto all = lines();
        return std::any_of(all.begin(), all.end(), [&](auto& line) { return line.find(part) != std::string::npos; });
    }
    void clear() {
        const std::lock_guard lock(m_mutex);
        m_lines.clear();
    }

  private:
    mutable std::mutex m_mutex;
    std::vector<std::string> m_lines;
};

} // namespace quillorn
