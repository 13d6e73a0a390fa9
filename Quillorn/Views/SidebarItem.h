#pragma once

#include "Platform/UUID.h"
#include "Views/TaskFilter.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quillorn {

class ModelContext;

/// What can be selected in the sidebar. Records are meant by their ids, so that a selection outlives them.
struct SidebarItem {
    enum class Kind : std::uint8_t {
        client,
        project,
        tag,
        today,
        dailySummary,
        upcoming,
        allTasks,
        activityLog,
        allNotes
    };

    Kind kind = Kind::today;
    /// Of the client, the project or the tag; nil for the others.
    UUID id{};

    /// As it is kept: "today", "project:" and the id.
    std::string key() const;
    /// The item of a key; absent for what is none, and for a record that is not there.
    static std::optional<SidebarItem> decode(std::string_view key, ModelContext& context);

    /// The record's name, or "Today" and the like; empty for a record that is gone.
    std::string label(ModelContext& context) const;
    /// Absent for those that show no task list of their own.
    std::optional<TaskFilter> taskFilter() const;

    friend bool operator==(const SidebarItem&, const SidebarItem&) = default;
};

/// The six that are no records, in the order of the sidebar.
inline constexpr SidebarItem::Kind smartListKinds[] = {SidebarItem::Kind::today,       SidebarItem::Kind::dailySummary,
                                                       SidebarItem::Kind::upcoming,    SidebarItem::Kind::allTasks,
                                                       SidebarItem::Kind::activityLog, SidebarItem::Kind::allNotes};

struct SmartListTexts {
    std::string_view key, label, symbol;
};
/// Of one of these six.
const SmartListTexts& textsOf(SidebarItem::Kind smartList);

} // namespace quillorn
