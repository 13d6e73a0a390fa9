#pragma once

#include <string_view>

namespace quillorn {

/// A line on the terminal that says how far long work has come, and is gone when the work is done. Without a terminal
/// on standard error nothing is shown.
class ProgressLine {
  public:
    ProgressLine();
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    void show(std::string_view text);

  private:
    bool m_isTerminal;
    bool m_isShown = false;
};

} // namespace quillorn
