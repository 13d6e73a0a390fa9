#pragma once

#include "Models/Enums.h"
#include "Models/ProjectTask.h"
#include "Views/ObservableList.h"
#include "Views/ScopeDetailView.h"

namespace quillorn {

struct UpdateProjectRequest;

/// A project: overview, tasks as a list or as a board by status, time, notes and chat.
class ProjectDetailView final : public ScopeDetailView {
  public:
    static constexpr std::array<DetailTab, 5> allTabs = {{{"overview", "Overview", "square.grid.2x2"},
                                                          {"tasks", "Tasks", "checklist"},
                                                          {"time", "Time", "clock"},
                                                          {"notes", "Notes", "note.text"},
                                                          {"chat", "Chat", "sparkles"}}};
    static constexpr std::string_view gone = "This project was deleted";
    /// Of the done ones the board shows that many, the latest.
    static constexpr std::size_t mostDone = 50;

    ProjectDetailView(const ViewEnvironment& environment, const AIEnvironment& ai, SceneStorage& scene,
                      const UUID& project);

    std::span<const DetailTab> tabs() const override { return allTabs; }
    bool isGone() const override { return project() == nullptr; }
    void setColor(const std::string& color) override;
    void setArchived(bool isArchived) override;
    std::optional<Confirmation> deletion() const override;
    void remove() override;

    /// The part of its tasks that is completed, from 0 to 1.
    double progress() const { return m_progress; }

    struct Card {
        UUID id;
        std::string title;
        std::string priorityMark{};
        /// Empty for no date.
        std::string due{};
        bool isOverdue = false;
        /// "2/5".
        std::string subtasks{};
        std::string time{};
        std::vector<std::string> tags{};
        bool isCompleted = false;

        friend bool operator==(const Card&, const Card&) = default;
    };
    struct Column {
        TaskStatus status = TaskStatus::todo;
        std::string_view label, symbol;
        /// Of all, those that are not shown too.
        std::size_t count = 0;
        ObservableList<Card> cards{};
    };
    /// In the order of work; subtasks stand with their parents.
    std::array<Column, 4>& board() { return m_board; }
    /// To another column.
    void moveCard(const UUID& task, TaskStatus status);
    /// A task with that title in a column.
    void addCard(const std::string& title, TaskStatus status);

  protected:
    bool write(Field field, const std::string& text) override;

  private:
    Project* project() const { return m_project.size() > 0 ? &m_project[0] : nullptr; }
    bool change(std::string name, const UpdateProjectRequest& request);
    void show() override;
    void showBoard();

    ObservedQuery<Project> m_project;
    ObservedQuery<ProjectTask> m_tasks;
    std::array<Column, 4> m_board;
    double m_progress = 0;
};

} // namespace quillorn
