#include "Views/SidebarItem.h"

#include "Models/Client.h"
#include "Models/Project.h"
#include "Models/Tag.h"
#include "Store/ModelContext.h"

namespace quillorn {

namespace {

using ItemKind = SidebarItem::Kind;

constexpr SmartListTexts smartListTexts[] = {
    {"today", "Today", "calendar"},
    {"dailySummary", "Daily Summary", "sun.max"},
    {"upcoming", "Upcoming", "calendar.badge.clock"},
    {"allTasks", "All Tasks", "tray.full.fill"},
    {"activityLog", "Activity Log", "clock.arrow.circlepath"},
    {"allNotes", "All Notes", "note.text"},
};

constexpr std::string_view recordKeys[] = {"client", "project", "tag"};

bool exists(ModelContext& context, ItemKind kind, const UUID& id) {
    switch (kind) {
    case ItemKind::client:
        return context.find<Client>(id) != nullptr;
    case ItemKind::project:
        return context.find<Project>(id) != nullptr;
    default:
        return context.find<Tag>(id) != nullptr;
    }
}

template <class Type>
std::string nameOf(ModelContext& context, const UUID& id) {
    const Type* record = context.find<Type>(id);
    return record != nullptr ? record->name() : std::string();
}

} // namespace

const SmartListTexts& textsOf(ItemKind smartList) {
    return smartListTexts[static_cast<std::size_t>(smartList) - static_cast<std::size_t>(ItemKind::today)];
}

std::string SidebarItem::key() const {
    if (kind >= ItemKind::today)
        return std::string(textsOf(kind).key);
    return std::string(recordKeys[static_cast<std::size_t>(kind)]) + ":" + id.string();
}

std::optional<SidebarItem> SidebarItem::decode(std::string_view key, ModelContext& context) {
    const std::size_t colon = key.find(':');
    if (colon == std::string_view::npos) {
        for (const ItemKind kind : smartListKinds)
            if (textsOf(kind).key == key)
                return SidebarItem{kind, {}};
        return std::nullopt;
    }
    const auto id = UUID::parse(key.substr(colon + 1)); // a second colon is no part of an id
    if (!id)
        return std::nullopt;
    for (const ItemKind kind : {ItemKind::client, ItemKind::project, ItemKind::tag})
        if (recordKeys[static_cast<std::size_t>(kind)] == key.substr(0, colon) && exists(context, kind, *id))
            return SidebarItem{kind, *id};
    return std::nullopt;
}

std::string SidebarItem::label(ModelContext& context) const {
    switch (kind) {
    case ItemKind::client:
        return nameOf<Client>(context, id);
    case ItemKind::project:
        return nameOf<Project>(context, id);
    case ItemKind::tag:
        return nameOf<Tag>(context, id);
    default:
        return std::string(textsOf(kind).label);
    }
}

std::optional<TaskFilter> SidebarItem::taskFilter() const {
    switch (kind) {
    case ItemKind::today:
        return TaskFilter{TaskFilter::Kind::today};
    case ItemKind::upcoming:
        return TaskFilter{TaskFilter::Kind::upcoming};
    case ItemKind::allTasks:
        return TaskFilter{TaskFilter::Kind::all};
    case ItemKind::tag:
        return TaskFilter{TaskFilter::Kind::tag, id};
    default:
        return std::nullopt;
    }
}

} // namespace quillorn
