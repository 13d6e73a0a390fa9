#pragma once

#include "Models/ParsedTaskResult.h"
#include "Models/TaskNames.h"
#include "Platform/Observers.h"
#include "Platform/UUID.h"
#include "Views/ViewEnvironment.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

/// One line in which a task is added: it shows what it understands while somebody types. Belongs to the main thread.
class QuickAddView {
  public:
    static constexpr std::string_view windowTitle = "Quick Add";
    static constexpr std::string_view prompt = "New task";
    static constexpr std::string_view notesPrompt = "Add notes";
    static constexpr std::string_view hint = "@project   #tag   !priority   “tomorrow 9:00”";
    static constexpr std::string_view startButton = "Start Timer";
    static constexpr std::string_view addButton = "Add Task";

    explicit QuickAddView(const ViewEnvironment& environment);
    ~QuickAddView() = default;
    QuickAddView(const QuickAddView&) = delete;
    QuickAddView& operator=(const QuickAddView&) = delete;

    [[nodiscard]] Observation observe(std::function<void()> handler) { return m_observers.add(std::move(handler)); }

    const std::string& text() const { return m_text; }
    void setText(std::string text);
    const std::string& notes() const { return m_notes; }
    void setNotes(std::string notes) { m_notes = std::move(notes); }

    /// What was understood beside the title.
    struct Chip {
        /// Empty for none.
        std::string_view symbol;
        std::string text;
        /// "green", "amber", "red" or "accent".
        std::string_view tone;

        friend bool operator==(const Chip&, const Chip&) = default;
    };
    std::vector<Chip> chips() const;
    /// What is left for the title.
    const std::string& title() const { return m_understood.title; }
    bool canAdd() const;
    /// Why the last one could not be added; empty when it was.
    const std::string& error() const { return m_error; }

    /// Makes the task and empties the line. Absent where it can't, as error() says then.
    std::optional<UUID> add();
    /// The same, and starts the timer on it.
    std::optional<UUID> addAndStart();

  private:
    void read();

    ViewEnvironment m_environment;
    TaskNames m_names;
    std::string m_text;
    std::string m_notes;
    std::string m_error;
    ParsedTaskResult m_understood;
    Observers<> m_observers;
    Observation m_changes;
};

} // namespace quillorn
