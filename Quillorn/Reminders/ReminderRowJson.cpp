#include "Reminders/ReminderRowJson.h"

#include "Platform/Json.h"

#include <algorithm>
#include <fmt/core.h>
#include <fmt/ranges.h>
#include <initializer_list>
#include <map>
#include <set>
#include <string_view>

namespace quillorn {

namespace {

template <typename Value>
Json orNull(const std::optional<Value>& value) {
    return value ? Json(*value) : Json();
}

Json jsonOf(const ReminderItem& item) {
    return Json::Object{{"id", item.id},
                        {"title", item.title},
                        {"notes", item.notes},
                        {"dueDate", item.dueDate ? Json(formatISO8601(*item.dueDate)) : Json()},
                        {"listName", item.listName}};
}

Json jsonOf(const ReminderImportRow& row) {
    return Json::Object{{"reminder", jsonOf(row.reminder)},
                        {"projectID", row.projectID ? Json(row.projectID->string()) : Json()},
                        {"title", row.title},
                        {"description", row.description},
                        {"priority", static_cast<int>(row.priority)},
                        {"confidence", orNull(row.confidence)},
                        {"reason", row.reason},
                        {"skipReason", orNull(row.skipReason)},
                        {"include", row.include}};
}

/// An object whose members are taken one by one; what is left in the end is unknown.
class Members {
  public:
    Members(const Json& json, std::string place, std::initializer_list<std::string_view> known)
        : m_place(std::move(place)) {
        if (!json.asObject())
            throw ReminderRowError(fmt::format("{} must be an object", m_place));
        m_members = json.asObject();
        for (const auto& [key, value] : *m_members)
            if (std::find(known.begin(), known.end(), key) == known.end())
                throw ReminderRowError(fmt::format("{} has the unknown key \"{}\"", m_place, key));
    }

    /// Null for one that is absent or null; a null pointer for a required one is a fault.
    const Json* find(std::string_view key, bool isRequired = false) const {
        const auto found = m_members->find(key);
        const bool isThere = found != m_members->end() && !found->second.isNull();
        if (!isThere && isRequired)
            throw ReminderRowError(fmt::format("{} is missing", name(key)));
        return isThere ? &found->second : nullptr;
    }
    std::string text(std::string_view key, bool isRequired = false) const {
        const Json* value = find(key, isRequired);
        if (value && !value->asString())
            refuse(key, "a text");
        return value ? *value->asString() : std::string();
    }
    const Json::Array& list(std::string_view key) const {
        const Json* value = find(key, true);
        if (!value->asArray())
            refuse(key, "a list");
        return *value->asArray();
    }
    [[noreturn]] void refuse(std::string_view key, std::string_view what) const {
        throw ReminderRowError(fmt::format("{} must be {}", name(key), what));
    }
    std::string name(std::string_view key) const {
        return m_place.empty() ? std::string(key) : fmt::format("{}.{}", m_place, key);
    }

  private:
    std::string m_place;
    const Json::Object* m_members = nullptr;
};

/// Only the id matters: what else the reminder says is read again.
std::string reminderIDOf(const Json& json, const std::string& place) {
    const Members members(json, place, {"id", "title", "notes", "dueDate", "listName"});
    for (const char* key : {"title", "notes", "dueDate", "listName"})
        members.text(key);
    return members.text("id", true);
}

ReminderImportRow rowOf(const Json& json, const std::string& place) {
    const Members members(
        json, place,
        {"reminder", "projectID", "title", "description", "priority", "confidence", "reason", "skipReason", "include"});
    ReminderImportRow row;
    row.reminder.id = reminderIDOf(*members.find("reminder", true), members.name("reminder"));
    row.title = members.text("title", true);
    row.description = members.text("description");
    row.reason = members.text("reason");
    if (members.find("skipReason"))
        row.skipReason = members.text("skipReason");
    if (members.find("projectID")) {
        row.projectID = UUID::parse(members.text("projectID"));
        if (!row.projectID)
            members.refuse("projectID", "the id of a project");
    }
    if (const Json* priority = members.find("priority")) {
        const auto known = priority->asInteger() ? enumFromRaw<TaskPriority>(*priority->asInteger()) : std::nullopt;
        if (!known)
            members.refuse("priority", "a whole number from 0 to 3");
        row.priority = *known;
    }
    if (const Json* confidence = members.find("confidence")) {
        if (!confidence->asDouble() && !confidence->asInteger())
            members.refuse("confidence", "a number");
        row.confidence =
            confidence->asDouble() ? *confidence->asDouble() : static_cast<double>(*confidence->asInteger());
    }
    const Json* include = members.find("include", true);
    if (!include->asBool())
        members.refuse("include", "true or false");
    row.include = *include->asBool();
    return row;
}

} // namespace

Json jsonOf(const ReminderRows& rows) {
    Json::Array all;
    for (const ReminderImportRow& row : rows.rows)
        all.push_back(jsonOf(row));
    return Json::Object{{"lists", Json::Array(rows.lists.begin(), rows.lists.end())}, {"rows", std::move(all)}};
}

ReminderRows readReminderRows(const Json& json) {
    const Members members(json, "the file", {"lists", "rows"});
    ReminderRows result;
    for (const Json& list : members.list("lists")) {
        if (!list.asString())
            members.refuse("lists", "a list of texts");
        result.lists.push_back(*list.asString());
    }
    std::set<std::string> ids;
    for (const Json& row : members.list("rows")) {
        const std::string place = fmt::format("rows[{}]", result.rows.size());
        result.rows.push_back(rowOf(row, place));
        if (!ids.insert(result.rows.back().reminder.id).second)
            throw ReminderRowError(fmt::format("{} is of the same reminder as a row before it", place));
    }
    return result;
}

void bindRows(std::vector<ReminderImportRow>& rows, const std::vector<ReminderItem>& open) {
    std::map<std::string_view, const ReminderItem*> byID;
    for (const ReminderItem& item : open)
        byID.emplace(item.id, &item);
    std::vector<std::string> unknown;
    for (ReminderImportRow& row : rows) {
        const auto found = byID.find(row.reminder.id);
        if (found == byID.end())
            unknown.push_back(fmt::format("\"{}\"", row.reminder.id));
        else
            row.reminder = *found->second;
    }
    if (!unknown.empty())
        throw ReminderRowError(
            fmt::format("no open reminder of these lists, or imported already: {}", fmt::join(unknown, ", ")));
}

} // namespace quillorn
