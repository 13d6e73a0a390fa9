#pragma once

#include "Platform/Date.h"
#include "Views/ActivityItem.h"

#include <array>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

class Calendar;

/// The figures above the log, on the items that the filter leaves.
struct ActivityDashboardHeader {
    static constexpr std::string_view todayLabel = "Today";
    static constexpr std::string_view todayIcon = "bolt.fill";
    static constexpr std::string_view sevenDaysLabel = "Last 7 Days";
    static constexpr std::string_view byTypeLabel = "By Type";
    /// In days.
    static constexpr int longestStreak = 30;

    struct Bar {
        /// "Thu".
        std::string label;
        std::size_t count = 0;

        friend bool operator==(const Bar&, const Bar&) = default;
    };
    struct Category {
        std::string_view label;
        std::string_view color;
        std::size_t count = 0;

        friend bool operator==(const Category&, const Category&) = default;
    };

    /// How many items lie from one instant up to another, that one left out.
    using Count = std::function<std::size_t(Date from, Date end)>;
    using KindCounts = std::array<std::size_t, ActivityItem::kinds>;

    ActivityDashboardHeader(const Count& count, const KindCounts& kinds, Date now, const Calendar& calendar);
    /// Of the items, the latest first.
    static ActivityDashboardHeader of(const std::vector<ActivityItem>& items, Date now, const Calendar& calendar);

    std::size_t today = 0;
    int streak = 0;
    std::size_t total = 0;
    /// "5 day streak", or "12 total" where the streak is below two days; the icon is empty then.
    std::string line;
    std::string_view lineIcon;
    /// The oldest first, ending today.
    std::array<Bar, 7> lastSevenDays{};
    /// Those with items.
    std::vector<Category> byType{};

    friend bool operator==(const ActivityDashboardHeader&, const ActivityDashboardHeader&) = default;
};

} // namespace quillorn
