#pragma once

#include "Platform/SystemLog.h"

#include <mutex>
#include <string>
#include <vector>

namespace quillorn {

/// Keeps what was logged.
class RecordingLog final : public SystemLog {
  public:
    void log(std::string_view line) override;
    std::vector<std::string> lines() const;
    /// Whether some line contains `part`.
    bool contains(std::string_view part) const;
    void clear();

  private:
    mutable std::mutex m_mutex;
    std::vector<std::string> m_lines;
};

} // namespace quillorn
