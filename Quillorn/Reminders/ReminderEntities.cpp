#include "Models/Client.h"
#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/Tag.h"
#include "Platform/Calendar.h"
#include "Platform/Text.h"
#include "Reminders/ReminderIntents.h"

#include <algorithm>
#include <charconv>

namespace quillorn {

namespace {

using namespace std::chrono;

std::optional<unsigned> number(std::string_view text) {
    unsigned value = 0;
    const bool isDigits = std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return isDigits && error == std::errc() ? std::optional(value) : std::nullopt;
}

/// "2026-01-31".
std::optional<year_month_day> parseDay(std::string_view text) {
    if (text.size() != 10 || text[4] != '-' || text[7] != '-')
        return std::nullopt;
    const auto yearNumber = number(text.substr(0, 4));
    const auto monthNumber = number(text.substr(5, 2));
    const auto dayNumber = number(text.substr(8, 2));
    if (!yearNumber || !monthNumber || !dayNumber)
        return std::nullopt;
    const year_month_day day{year{static_cast<int>(*yearNumber)}, month{*monthNumber}, std::chrono::day{*dayNumber}};
    return day.ok() ? std::optional(day) : std::nullopt;
}

} // namespace

DateComponents DateComponents::of(Date date, bool hasTime, const Calendar& calendar) {
    const year_month_day day = calendar.day(date);
    DateComponents components{day.year(), day.month(), day.day(), {}, {}};
    if (hasTime) {
        const std::string time = calendar.format(date, "HHmm");
        if (const auto digits = number(time)) { // by the digits of the locale it may be none
            components.hour = hours{*digits / 100};
            components.minute = minutes{*digits % 100};
        }
    }
    return components;
}

std::optional<DateComponents> parseDateComponents(std::string_view text, const Calendar& calendar) {
    const auto day = parseDay(text.substr(0, 10));
    if (!day)
        return std::nullopt;
    DateComponents components{day->year(), day->month(), day->day(), {}, {}};
    if (text.size() == 10)
        return components;
    // With a zone it is an instant; seconds may be left out.
    std::string_view time = text.substr(10);
    const std::size_t zone = time.find_first_of("Z+-");
    if (zone != std::string_view::npos) {
        std::string full(text);
        if (zone == 6)
            full.insert(16, ":00");
        const std::optional<Date> date = parseISO8601(full);
        return date ? std::optional(DateComponents::of(*date, true, calendar)) : std::nullopt;
    }
    if ((time.size() != 6 && time.size() != 9) || (time[0] != 'T' && time[0] != ' ') || time[3] != ':')
        return std::nullopt;
    const auto hour = number(time.substr(1, 2));
    const auto minute = number(time.substr(4, 2));
    const auto second = time.size() == 9 ? number(time.substr(7, 2)) : std::optional(0U);
    if (!hour || !minute || !second || *hour > 23 || *minute > 59 || *second > 59 ||
        (time.size() == 9 && time[6] != ':'))
        return std::nullopt;
    components.hour = hours{*hour};
    components.minute = minutes{*minute};
    return components;
}

std::optional<ResolvedDate> resolve(const DateComponents& components, const Calendar& calendar, Date now) {
    if (!components.day && !components.hour)
        return std::nullopt;
    const year_month_day today = calendar.day(now);
    const year_month_day day{components.year.value_or(today.year()), components.month.value_or(today.month()),
                             components.day.value_or(today.day())};
    if (!day.ok())
        return std::nullopt;
    const auto time = components.hour.value_or(hours{0}) + components.minute.value_or(minutes{0});
    Date date = calendar.instant(local_days{day} + time);
    if (!components.day && date < now)
        date = calendar.addDays(date, 1);
    return ResolvedDate{date, components.hour.has_value()};
}

const UUID& QuillornReminderList::inboxID() {
    static const UUID id = UUID::parse("00000000-0000-0000-0000-00000000C11E").value();
    return id;
}

QuillornReminderList QuillornReminderList::of(const Project* project) {
    if (!project)
        return inbox();
    const Client* client = project->client();
    return {project->id(), project->name(), client ? std::optional(client->name()) : std::nullopt};
}

QuillornReminder QuillornReminder::of(const ProjectTask& task, const Calendar& calendar) {
    QuillornReminder reminder{
        .id = task.id(),
        .title = task.title(),
        .note = task.taskDescription(),
        .isCompleted = task.isCompleted(),
        .isFlagged = task.priority() >= TaskPriority::high,
        .creationDate = task.createdAt(),
        .completionDate = task.completedAt(),
        .list = QuillornReminderList::of(task.project()),
    };
    if (task.dueDate())
        reminder.dueDate = DateComponents::of(*task.dueDate(), task.dueHasTime(), calendar);
    for (const Tag* tag : task.tags())
        reminder.tags.push_back(tag->name());
    return reminder;
}

QuillornIntentError::QuillornIntentError(Kind kind)
    : std::runtime_error(kind == Kind::storeUnavailable
                             ? "Quillorn can't open its data right now. Open Quillorn for details."
                         : kind == Kind::taskNotFound ? "That task isn't in Quillorn anymore."
                                                      : "What should the reminder say?"),
      m_kind(kind) {}

} // namespace quillorn
