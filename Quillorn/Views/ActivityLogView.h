#pragma once

#include "Platform/Observers.h"
#include "Store/ChangeSet.h"
#include "Store/Statement.h"
#include "Views/ActivityDashboardHeader.h"
#include "Views/ObservableList.h"

#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillorn {

class Clock;
class MainContext;
class Text;

/// The history of all work, the latest first. It knows the date of each item, and reads what it says of itself only
/// for those that are shown: a page at first, more where they are asked for. Belongs to the main thread.
class ActivityLogView {
  public:
    static constexpr std::string_view filterLabel = "Client";
    static constexpr std::string_view filterHelp = "Filter activity by client";
    static constexpr std::string_view allClients = "All Clients";
    static constexpr std::string_view emptyIcon = "clock.arrow.circlepath";
    static constexpr std::string_view emptyTitle = "No Activity";
    static constexpr std::size_t pageSize = 200;

    /// The heading of a section, or an item.
    struct Row {
        std::string id;
        bool isHeading = false;
        std::string title{};
        std::string subtitle{};
        /// "2:15 PM", "Nov 3".
        std::string time{};
        std::string_view icon{};
        std::string color{};
        ActivityItem::Kind kind{};
        /// The record that it is about.
        UUID record{};

        friend bool operator==(const Row&, const Row&) = default;
    };
    struct FilterChoice {
        /// Absent for all of them.
        std::optional<UUID> client{};
        std::string name;

        friend bool operator==(const FilterChoice&, const FilterChoice&) = default;
    };

    ActivityLogView(MainContext& main, const Clock& clock, const Calendar& calendar, const Text& text,
                    std::string clientFilterRaw = {});
    ~ActivityLogView() = default;
    ActivityLogView(const ActivityLogView&) = delete;
    ActivityLogView& operator=(const ActivityLogView&) = delete;

    /// Told when anything but the rows has changed; they tell for themselves.
    [[nodiscard]] Observation observe(std::function<void()> handler) { return m_observers.add(std::move(handler)); }
    /// The present moment has moved on: running entries have grown, or it is another day.
    void update();

    /// A client's id as text; any other text is no filter. The window keeps it.
    const std::string& clientFilterRaw() const { return m_filter; }
    void setClientFilterRaw(std::string filter);
    /// "All Clients", then each by name.
    std::vector<FilterChoice> filterChoices() const;

    const ActivityDashboardHeader& header() const { return *m_header; }
    const ObservableList<Row>& rows() const { return m_rows; }
    ObservableList<Row>& rows() { return m_rows; }
    /// Whether an entry that is shown still grows.
    bool hasRunning() const { return m_hasRunning; }
    bool hasMore() const { return m_shown < m_count; }
    void showMore();
    std::string_view emptyMessage() const;

  private:
    /// An item without its words; links are row keys, 0 for none.
    struct Mark {
        Date timestamp{};
        RowKey record = 0;
        RowKey task = 0;
        RowKey project = 0;
        RowKey client = 0;
        ActivityItem::Kind kind{};
        bool isRunning = false;
    };
    /// The rows of each type that have to be looked at again.
    struct Changed {
        std::vector<RowKey> tasks, entries, notes, projects, clients;
    };

    /// A mark that is shown, with its row.
    struct Shown {
        Mark mark;
        Row row;
    };
    using Shelf = std::map<std::pair<ActivityItem::Kind, RowKey>, Shown>;

    void follow(const ChangeSet& changes);
    void load();
    /// Reads the marks of one type: those that `condition` restricts by one value, or all.
    void read(const EntityType& type, const std::string& condition, const SQLValue& value,
              std::vector<Mark>& marks) const;
    /// To marks of whole tables, which know only what their own rows say.
    static void addOwners(std::vector<Mark>& marks);
    /// The marks of what has changed; adds to that what has moved along with its task. Absent where a project has gone
    /// to another client, and everything in it with it.
    std::optional<std::vector<Mark>> readChanged(Changed& changed) const;
    /// The tasks that are in another project by these marks than before; absent as above.
    std::optional<std::vector<RowKey>> movedTasks(const std::vector<Mark>& read, const Changed& changed) const;
    /// Adds what belongs to these tasks.
    void addOfTasks(std::string_view table, const std::vector<RowKey>& tasks, std::vector<RowKey>& keys) const;
    static bool isOf(const Mark& mark, const Changed& changed);
    static bool mentions(const Mark& mark, const Changed& changed);
    void show();
    void fetchRecords(std::span<const Mark> marks) const;
    void showRows(std::span<const Mark> marks);
    std::optional<Row> rowOf(const Mark& mark) const;

    MainContext& m_main;
    const Clock& m_clock;
    const Calendar& m_calendar;
    const Text& m_text;
    std::string m_filter;
    std::vector<Mark> m_marks; // the earliest first
    std::size_t m_limit = pageSize;
    std::size_t m_count = 0; // of those that the filter leaves
    std::size_t m_shown = 0;
    bool m_hasRunning = false;
    bool m_isStale = true; // what there is could not be read
    Date m_day{};          // on which the rows were made
    Shelf m_shelf;
    std::optional<ActivityDashboardHeader> m_header;
    ObservableList<Row> m_rows;
    Observers<> m_observers;
    Observation m_changes;
};

} // namespace quillorn
