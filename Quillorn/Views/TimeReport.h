#pragma once

#include "Platform/Date.h"
#include "Platform/UUID.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

class Calendar;
class ModelContext;
class Text;

enum class TimeReportGrouping { day, week, project, task, client, tag };
/// "day", "week", …, in the order of the cases.
extern const std::vector<std::string> timeReportGroupings;

struct TimeReportRequest {
    /// Both belong to the range.
    std::chrono::local_days from{};
    std::chrono::local_days to{};
    std::optional<UUID> client{};
    std::optional<UUID> project{};
    TimeReportGrouping by = TimeReportGrouping::project;
    /// Each entry is taken up to the next multiple of it; zero for none.
    std::chrono::minutes rounding{0};
};

/// What a report knows of an entry. An absent link is to nothing.
struct ReportedTime {
    struct Link {
        UUID id{};
        std::string name{};
    };

    Date start{};
    /// Absent while it runs.
    std::optional<Date> end{};
    std::optional<Link> task{};
    /// The entry's own project, else that of its task.
    std::optional<Link> project{};
    std::optional<Link> client{};
    std::vector<Link> tags{};
};

/// Sums of time. An entry counts whole on the day on which it began; a running one counts up to now. Weeks begin on
/// Monday.
struct TimeReport {
    struct Row {
        /// The day, the Monday of the week, an id, or "none".
        std::string key;
        std::string title;
        double seconds = 0;
        std::size_t entries = 0;

        friend bool operator==(const Row&, const Row&) = default;
    };

    TimeReportRequest request{};
    /// Each entry once, also where its tags have put it into several rows.
    double totalSeconds = 0;
    std::size_t entries = 0;
    /// Days and weeks in their order, others by time, the most first.
    std::vector<Row> rows{};
};

/// The entries of the request's days, client and project, archived work among them.
std::vector<ReportedTime> reportedTimes(ModelContext& context, const TimeReportRequest& request,
                                        const Calendar& calendar);
/// The report on these entries, which have been chosen by the request.
TimeReport timeReport(const std::vector<ReportedTime>& times, const TimeReportRequest& request, Date now,
                      const Calendar& calendar, const Text& text);

/// "2026-01-15".
std::string isoDay(std::chrono::local_days day);

} // namespace quillorn
