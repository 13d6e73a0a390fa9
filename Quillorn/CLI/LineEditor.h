#pragma once

#include <memory>
#include <optional>
#include <string>

namespace quillorn {

/// Reads lines from the terminal, which the user may edit and take up again. Waits for the user on the calling thread.
class LineEditor {
  public:
    explicit LineEditor(std::string prompt);
    ~LineEditor();
    LineEditor(const LineEditor&) = delete;
    LineEditor& operator=(const LineEditor&) = delete;

    /// The next line without its end; absent when the user ends (Ctrl-D). Ctrl-C empties the line.
    std::optional<std::string> read();
    /// Gives the terminal back as it was; for a program that is about to end. Safe from any thread.
    void restoreTerminal() const;

  private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace quillorn
