#pragma once

#include "Models/Enums.h"
#include "Views/SettingsPane.h"

#include <string_view>

namespace quillorn {

/// Where the user chooses how tasks are made, shown and completed. Belongs to the main thread.
class GeneralSettingsView : public SettingsPane {
  public:
    struct Section {
        std::string_view title, symbol;
    };
    static constexpr Section tasks{"Tasks", "checklist"};
    static constexpr std::string_view showCompletedLabel = "Show Completed Tasks";
    static constexpr std::string_view defaultPriorityLabel = "Default Priority";
    static constexpr Section subtasks{"Subtasks", "list.bullet.indent"};
    static constexpr std::string_view completionLabel = "Completion";
    static constexpr Section thoughtkeg{"Thoughtkeg", "books.vertical"};
    static constexpr std::string_view pushLabel = "Send completed tasks to Thoughtkeg";
    static constexpr std::string_view pushHelp =
        "When a task with a description or notes is completed, push it to Thoughtkeg's inbox for review. Requires "
        "Thoughtkeg to be running.";

    GeneralSettingsView(SettingsStore& settings, MainQueue& queue) : SettingsPane(settings, queue) {}

    // Setters throw std::runtime_error where a choice can't be kept.
    bool showsCompletedTasks() const;
    void setShowsCompletedTasks(bool shows);
    TaskPriority defaultPriority() const;
    void setDefaultPriority(TaskPriority priority);
    SubtaskCompletionBehavior completion() const;
    void setCompletion(SubtaskCompletionBehavior behavior);
    /// Under the picker, of the case that is chosen.
    std::string_view completionHelp() const { return explanation(completion()); }
    bool pushesToThoughtkeg() const;
    void setPushesToThoughtkeg(bool pushes);
};

} // namespace quillorn
