#pragma once

#include "Platform/MainQueue.h"
#include "Platform/Observers.h"
#include "Store/ObservedQuery.h"
#include "Views/ObservableList.h"
#include "Views/SceneStorage.h"
#include "Views/SmartListDashboard.h"
#include "Views/TaskEdits.h"
#include "Views/TaskListLayout.h"
#include "Views/TaskListPlacement.h"
#include "Views/TaskListTexts.h"
#include "Views/TaskMeeting.h"
#include "Views/TaskRowMaker.h"
#include "Views/TaskSorting.h"
#include "Views/TaskTextSearch.h"

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_set>
#include <vector>

namespace quillorn {

/// The list of tasks behind every filter: narrowed by search and meeting, sorted, in sections, subtasks under their
/// parents. One changed task costs what it changes. Belongs to the main thread.
class TaskListView final : private TaskRowText::Maker {
  public:
    using SortOrder = quillorn::SortOrder;
    using GroupBy = quillorn::GroupBy;
    using DueDateGroup = quillorn::DueDateGroup;

    TaskListView(const ViewEnvironment& environment, SceneStorage& scene, TaskFilter filter);
    ~TaskListView();
    TaskListView(const TaskListView&) = delete;
    TaskListView& operator=(const TaskListView&) = delete;

    const TaskFilter& filter() const { return m_filter; }
    /// Heads of sections, the row of done work, and tasks.
    ObservableList<TaskListRow>& rows() { return m_rows; }
    /// Told when anything but the rows has changed.
    [[nodiscard]] Observation observe(std::function<void()> handler) { return m_observers.add(std::move(handler)); }

    const std::string& searchText() const { return m_searchText; }
    void setSearchText(std::string text);
    static constexpr std::string_view searchPrompt = "Search tasks";
    static constexpr std::string_view title = "Tasks";
    static constexpr std::string_view sortLabel = "Sort By";
    static constexpr std::string_view groupLabel = "Group By";
    static constexpr std::string_view showCompletedLabel = "Show Completed";

    /// Whether the bar of meetings shows.
    bool hasMeetings() const { return m_tally.ofMeetings > 0; }
    /// Those of the list, the latest first.
    const std::vector<TaskMeeting>& meetings() const;
    /// Empty for all.
    const std::string& meeting() const { return m_meeting; }
    void setMeeting(std::string key);
    static constexpr std::string_view meetingHelp = "Show only tasks created from a meeting";
    static constexpr std::string_view meetingPrompt = "Search meetings";
    static constexpr std::string_view clearMeetingButton = "Clear meeting filter";
    /// "Meeting: All Meetings".
    std::string meetingButton() const { return "Meeting: " + meetingTitle(); }
    /// Where none of them has what was typed in its title.
    static std::string noMeetings(std::string_view typed);
    /// "All Meetings", or the title of the chosen one.
    std::string meetingTitle() const;

    SortOrder sortOrder() const { return m_options.sortOrder; }
    void setSortOrder(SortOrder order);
    GroupBy groupBy() const { return m_options.groupBy; }
    void setGroupBy(GroupBy grouping);
    bool showsCompleted() const { return m_options.showsCompleted; }
    /// For all lists.
    void setShowsCompleted(bool shows);
    bool isDoneSectionExpanded() const { return m_options.isDoneOpen; }
    void toggleDoneSection();
    void toggleDisclosure(const UUID& task);

    /// What stands in place of rows; absent where there are some.
    std::optional<EmptyState> emptyState() const;
    void clearFilters();
    /// A list that was kept is shown again: it begins without a search and a selection, and with the order that the
    /// window's lists have.
    void reopen();
    /// Absent where the list is no smart list.
    std::optional<SmartListDashboardHeader> dashboard() const;
    /// Number of tasks before search and meeting narrow them.
    std::size_t taskCount() const { return m_members.size(); }

    /// Several rows may be selected; what was selected and is gone is not.
    TaskIds selection() const;
    void select(TaskIds ids);
    /// What an action on the row of `task` is for: the selection where the row is part of it.
    TaskIds targets(const UUID& task) const;
    TaskEdits& edits() { return m_edits; }

  private:
    struct Options {
        SortOrder sortOrder;
        GroupBy groupBy;
        bool showsCompleted;
        bool isDoneOpen;
        IdSet open; // tasks that show their subtasks

        friend bool operator==(const Options&, const Options&) = default;
    };

    /// What a task was to the rows before it changed.
    struct Change {
        TaskListItem* item = nullptr; // null for one that is gone
        UUID id{};
        TaskListPlacement::Role former{};
        bool isNew = false;
        /// Whether rows may come, go or move.
        bool isElsewhere = false;
    };

    Options readOptions() const;
    ObservedCondition condition() const;
    void reload();
    void follow(const RowSteps& told);
    void rebuild();
    void makeWords(RowKey task) override;
    void renew(const std::vector<TaskListItem*>& shown);
    void noteRunning(const TaskListItem& item, const TaskRowMaker& maker);
    void take(const std::vector<ProjectTask*>& tasks, std::vector<Change>& changes);
    Change take(ProjectTask& task, const TaskTotals& totals);
    void place(std::span<Change> changes);
    void drop(RowKey key, std::vector<Change>& changes);
    bool placeRows(std::vector<Change>& changes);
    void fill(TaskListItem& item, ProjectTask& task, const TaskTotals& totals);
    void fillGuests(TaskListItem& item);
    bool isOfMeeting(const ProjectTask& task) const;
    bool isLetThrough(TaskListItem& item) const;
    bool isEarlier(const TaskListItem& a, const TaskListItem& b) const;
    void readTagged();
    void narrow(const TaskTextSearch* former = nullptr);
    void layOut();
    void changeRows(const TaskListItem& item);
    void settingsChanged();
    void momentPassed();
    void armTimer();
    void tick();

    ViewEnvironment m_environment;
    SceneStorage& m_scene;
    TaskFilter m_filter;
    TaskEdits m_edits;
    TaskMoment m_moment;
    Options m_options;
    std::string m_searchText;
    TaskTextSearch m_search;
    std::vector<RowKey> m_tagged; // tasks that it finds by their tags; sorted
    std::string m_meeting;
    TaskIds m_selection;

    ObservedQuery<ProjectTask> m_members;
    std::optional<ObservedQuery<ProjectTask>> m_forecast;
    std::optional<ObservedCount> m_completed;
    TaskListItems m_items;
    std::vector<TaskListItem*> m_sorted;
    TaskSections m_sections;
    std::uint32_t m_pass = 0;
    TaskTally m_tally;
    mutable std::optional<std::vector<TaskMeeting>> m_meetings;
    std::unordered_set<RowKey> m_running; // rows that were looked at and whose time grows
    std::optional<Date> m_nextDue;        // after which a row looks different
    ObservableList<TaskListRow> m_rows;
    TaskListPlan m_plan; // of these rows
    Observers<> m_observers;

    std::optional<MainQueue::TimerId> m_timer;
    std::vector<Observation> m_observations;
};

} // namespace quillorn
