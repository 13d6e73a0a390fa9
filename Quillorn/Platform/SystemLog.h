#pragma once

#include <string_view>

namespace quillorn {

/// Where the program's own messages go: free lines, no levels. Safe to call from any thread.
class SystemLog {
  public:
    virtual ~SystemLog() = default;
    /// Writes one line; `line` has no line end of its own.
    virtual void log(std::string_view line) = 0;
};

/// Standard error, each line in one write. Under systemd (JOURNAL_STREAM names standard error) lines carry the
/// journal's priority prefix.
class StandardErrorLog final : public SystemLog {
  public:
    StandardErrorLog();
    void log(std::string_view line) override;

  private:
    bool m_journal = false;
};

} // namespace quillorn
