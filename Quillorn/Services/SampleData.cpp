#include "Services/SampleData.h"

#include "Platform/Calendar.h"
#include "Services/ExportFormat.h"

#include <algorithm>
#include <functional>
#include <span>

namespace quillorn {

namespace {

using std::chrono::days;

/// Calls for each date of the export, with the name of its member.
void forEachDate(Json& document, const std::function<void(std::string_view name, Json& value, Date date)>& handle) {
    Json::Object* tables = document.asObject();
    if (tables == nullptr)
        return;
    for (const ExportTable& table : exportTables()) {
        const auto found = tables->find(table.name);
        Json::Array* records = found == tables->end() ? nullptr : found->second.asArray();
        for (Json& record : records == nullptr ? std::span<Json>() : std::span<Json>(*records)) {
            Json::Object* members = record.asObject();
            for (const ExportField& field : table.fields) {
                if (members == nullptr || field.kind != ExportField::Kind::date || !members->contains(field.name))
                    continue;
                Json& value = members->find(field.name)->second;
                const std::string* text = value.asString();
                if (const auto date = text == nullptr ? std::nullopt : parseExportedDate(*text))
                    handle(field.name, value, *date);
            }
        }
    }
}

/// The date's digits as a time of the calendar, some days later.
Date moved(Date date, days by, const Calendar& calendar) {
    const auto whole = std::chrono::floor<std::chrono::seconds>(date);
    return calendar.instant(std::chrono::local_seconds((whole + by).time_since_epoch())) + (date - whole);
}

} // namespace

std::string exportMovedTo(Date now, const Calendar& calendar, std::string_view text) {
    Json document = Json::parse(text);
    Date last{};
    forEachDate(document, [&](std::string_view name, Json&, Date date) {
        if (name != "dueDate")
            last = std::max(last, date);
    });
    const auto today = std::chrono::sys_days(calendar.day(now));
    days by = today - std::chrono::floor<days>(last);
    if (moved(last, by, calendar) > now)
        by -= days(1);
    forEachDate(document,
                [&](std::string_view, Json& value, Date date) { value = exportedDate(moved(date, by, calendar)); });
    return document.text();
}

} // namespace quillorn
