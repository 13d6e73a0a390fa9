#pragma once

#include "Platform/Date.h"
#include "Platform/NotificationCenter.h"
#include "Platform/Observers.h"
#include "Views/SceneStorage.h"
#include "Views/SidebarItem.h"
#include "Views/TaskFilter.h"
#include "Views/TaskListTexts.h"
#include "Views/ViewEnvironment.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

// Commands of menus, as the names of notifications.
namespace commands {
inline constexpr std::string_view newClient = "newClient";
inline constexpr std::string_view newProject = "newProject";
inline constexpr std::string_view newTask = "newTask";
inline constexpr std::string_view newNote = "newNote";
inline constexpr std::string_view importReminders = "importReminders";
inline constexpr std::string_view showAllTasks = "showAllTasks";
inline constexpr std::string_view showToday = "showToday";
inline constexpr std::string_view showUpcoming = "showUpcoming";
/// Its object is the Project* of the main context to show.
inline constexpr std::string_view navigateToProject = "navigateToProject";
inline constexpr std::string_view toggleTimer = "toggleTimer";
inline constexpr std::string_view toggleTaskComplete = "toggleTaskComplete";
inline constexpr std::string_view logTime = "logTime";
} // namespace commands

/// The main window: what is selected in its three columns, kept for the window, and the sheets that commands open.
/// Belongs to the main thread, on which commands are posted.
class ContentView {
  public:
    ContentView(const ViewEnvironment& environment, SceneStorage& scene, NotificationCenter& notifications);
    ~ContentView() = default;
    ContentView(const ContentView&) = delete;
    ContentView& operator=(const ContentView&) = delete;

    /// Told when anything here has changed.
    [[nodiscard]] Observation observe(std::function<void()> handler) { return m_observers.add(std::move(handler)); }

    /// To be called when the window first comes up: brings back what was selected in it, and the running timer. The
    /// records follow on the next turn, for selecting in the sidebar clears them.
    void restore();

    const std::optional<SidebarItem>& sidebarSelection() const { return m_sidebar; }
    void select(std::optional<SidebarItem> item);
    const std::optional<UUID>& selectedTask() const { return m_task; }
    void selectTask(std::optional<UUID> task);
    const std::optional<UUID>& selectedNote() const { return m_note; }
    void selectNote(std::optional<UUID> note);
    const std::optional<UUID>& selectedTimeEntry() const { return m_entry; }
    void selectTimeEntry(std::optional<UUID> entry);

    /// What the middle column shows.
    struct Column {
        enum class Kind { nothing, taskList, client, project, dailySummary, activityLog, allNotes };
        Kind kind = Kind::nothing;
        TaskFilter filter{};          // of a task list
        std::optional<UUID> record{}; // the client or the project
        EmptyState emptyState{};      // of nothing
    };
    Column contentColumn() const;

    /// What the last column shows: the first that is selected of these.
    struct Detail {
        enum class Kind { nothing, task, note, timeEntry };
        Kind kind = Kind::nothing;
        UUID record{};
        EmptyState emptyState{};
    };
    Detail detailColumn() const;

    enum class Sheet { none, newProject, newTask, newNote, reminderImport, logTime };
    Sheet sheet() const { return m_sheet; }
    void showSheet(Sheet sheet);
    /// Behind the sheet for new tasks, the newest task that was made meanwhile is selected.
    void closeSheet();

    /// What the time is logged for: the selected task, else the selected project.
    struct LogTarget {
        std::optional<UUID> task{};
        std::optional<UUID> project{};
    };
    LogTarget logTarget() const;
    /// On offer for a new project: by name, none that is archived.
    struct ClientChoice {
        UUID id;
        std::string name;
    };
    std::vector<ClientChoice> clientChoices() const;

  private:
    void listen(NotificationCenter& notifications);
    void store(const Setting& setting, const std::optional<UUID>& id);
    void changeRecord(std::optional<UUID>& selection, std::optional<UUID> next, const Setting& setting);
    void toggleTimer();
    void toggleTaskComplete();
    void logTime();
    void selectNewestTask();

    ViewEnvironment m_environment;
    SceneStorage& m_scene;
    std::optional<SidebarItem> m_sidebar;
    std::optional<UUID> m_task;
    std::optional<UUID> m_note;
    std::optional<UUID> m_entry;
    Sheet m_sheet = Sheet::none;
    Date m_sheetOpened{};
    Observers<> m_observers;
    std::vector<Observation> m_observations;
    std::shared_ptr<int> m_life = std::make_shared<int>(); // for what is posted
};

} // namespace quillorn
