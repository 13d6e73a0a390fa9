#pragma once

#include "Models/Enums.h"
#include "Models/Note.h"
#include "Models/ProjectTask.h"
#include "Models/TaskActions.h"
#include "Models/TimeEntry.h"
#include "Services/TaskAgentClipboard.h"
#include "Views/DetailView.h"
#include "Views/ObservableList.h"
#include "Views/TaskForm.h"

namespace quillorn {

/// All about one task, edited in place: fields are kept when they are left, each as one step to undo.
class TaskDetailView final : public DetailView {
  public:
    static constexpr std::string_view copyButton = "Copy for Agent";
    static constexpr std::string_view subtasksTitle = "Subtasks";
    static constexpr std::string_view timeTitle = "Time";
    static constexpr std::string_view commentsTitle = "Comments";
    static constexpr std::string_view commentPrompt = "Add a comment…";
    static constexpr std::string_view recording = "Recording...";
    static constexpr std::string_view gone = "This task was deleted";
    static constexpr std::size_t mostCommentCharacters = 20'000;

    /// `config` says how agents reach the local server at that moment.
    TaskDetailView(const ViewEnvironment& environment, const UUID& task, std::function<APIConfig()> config);

    bool isGone() const { return task() == nullptr; }

    enum class Field { title, description, sourceTitle, sourceURL };
    const EditedText& field(Field field) const { return m_fields.at(static_cast<std::size_t>(field)); }
    void type(Field field, std::string text);
    /// Keeps what was typed; false where it can't be, as error() says: then it stays in the field.
    bool leave(Field field);
    /// All of them, as before another task is shown or the window closes.
    bool leaveAll();
    void revert(Field field);

    static constexpr std::string_view completionButton(bool isCompleted) { return isCompleted ? "Reopen" : "Complete"; }
    std::string_view timerButton() const { return isTiming() ? "Stop timer" : "Start timer"; }

    /// The ready words.
    struct Words {
        bool isCompleted = false;
        std::string statusLabel{}, statusSymbol{};
        std::string priorityLabel{}, priorityMark{};
        /// "Today, 4:00 PM"; empty for no date.
        std::string due{};
        bool isOverdue = false;
        std::string created{}, updated{};
        /// Empty while it is open.
        std::string completed{};
        std::string source{}, sourceURL{};
        std::vector<PathStep> path{};
        /// "2 of 5", and that as a part from 0 to 1.
        std::string subtasks{};
        double progress = 0;
        /// "3h 47m", and a clock while the timer runs on it.
        std::string time{};
        std::string clock{};

        friend bool operator==(const Words&, const Words&) = default;
    };
    const Words& words() const { return m_words; }

    struct SubtaskRow {
        UUID id;
        std::string title;
        std::string symbol;
        bool isCompleted = false;
        /// "Complete Buy paper".
        std::string toggleLabel{};

        friend bool operator==(const SubtaskRow&, const SubtaskRow&) = default;
    };
    struct EntryRow {
        UUID id;
        /// "9:00 AM – 10:30 AM", and the day where that isn't today.
        std::string times;
        std::string title;
        std::string duration;
        bool isRunning = false;

        friend bool operator==(const EntryRow&, const EntryRow&) = default;
    };
    struct CommentRow {
        UUID id;
        std::string when;
        std::string text;

        friend bool operator==(const CommentRow&, const CommentRow&) = default;
    };
    ObservableList<SubtaskRow>& subtasks() { return m_subtaskRows; }
    /// The latest first.
    ObservableList<EntryRow>& entries() { return m_entryRows; }
    /// The oldest first.
    ObservableList<CommentRow>& comments() { return m_commentRows; }
    ObservableList<FormChoice>& tags() { return m_tagRows; }
    std::vector<FormChoice> tagChoices() const { return quillorn::tagChoices(environment()); }
    std::vector<FormChoice> projectChoices() const;

    /// Stops the timer that runs on it before it is completed.
    void toggleCompleted();
    void setStatus(TaskStatus status);
    void setPriority(TaskPriority priority);
    std::optional<DueChoice> due() const;
    void setDue(const std::optional<DueChoice>& due);
    /// False where the words can't be read; blank is no date.
    bool setDueText(std::string_view words);
    void toggleTag(const UUID& tag);
    /// To no project without one.
    void move(const std::optional<UUID>& project);
    void setParent(const std::optional<UUID>& parent);

    void addSubtask(const std::string& title);
    void toggleSubtask(const UUID& subtask);
    bool isTiming() const;
    void toggleTimer();
    /// Blank text adds nothing.
    void addComment(const std::string& text);
    std::optional<Confirmation> deletionOfComment(const UUID& comment) const;
    void removeComment(const UUID& comment);

    /// For the pasteboard.
    std::string copyForAgent() const;
    std::optional<Confirmation> deletion() const;
    void remove();

  private:
    using Edit = std::function<void(ProjectTask& task, Date now)>;

    ProjectTask* task() const { return m_task.size() > 0 ? &m_task[0] : nullptr; }
    bool edit(std::string name, const Edit& edit);
    void show() override;
    void showWords(const ProjectTask& task);
    void showLists(const ProjectTask& task);
    void tick();

    std::function<APIConfig()> m_config;
    ObservedQuery<ProjectTask> m_task;
    ObservedQuery<ProjectTask> m_subtasks;
    ObservedQuery<TimeEntry> m_entries;
    ObservedQuery<Note> m_comments;
    std::array<EditedText, 4> m_fields;
    Words m_words;
    ObservableList<SubtaskRow> m_subtaskRows;
    ObservableList<EntryRow> m_entryRows;
    ObservableList<CommentRow> m_commentRows;
    ObservableList<FormChoice> m_tagRows;
    Observation m_ticks;
};

} // namespace quillorn
