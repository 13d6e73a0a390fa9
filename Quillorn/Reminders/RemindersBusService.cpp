#include "Reminders/RemindersBusService.h"

#include <exception>
#include <fmt/core.h>
#include <string_view>

namespace quillorn {

namespace {

/// Of a text, in bytes; far beyond what anybody says.
constexpr std::size_t maximumText = 1 << 20;

[[noreturn]] void refuse(const std::string& words) {
    throw BusError("com.quillorn.Error.BadParameter", words);
}

const std::string& textOf(const std::string& name, const BusValue& value) {
    const std::string* text = value.asString();
    if (!text)
        refuse(fmt::format("{} must be a text", name));
    if (text->size() > maximumText)
        refuse(fmt::format("{} is too long", name));
    return *text;
}

bool flagOf(const std::string& name, const BusValue& value) {
    if (!value.asBool())
        refuse(fmt::format("{} must be true or false", name));
    return *value.asBool();
}

const BusValue::List& listOf(const std::string& name, const BusValue& value) {
    if (!value.asList())
        refuse(fmt::format("{} must be a list", name));
    return *value.asList();
}

std::vector<std::string> textsOf(const std::string& name, const BusValue& value) {
    std::vector<std::string> texts;
    for (const BusValue& each : listOf(name, value))
        texts.push_back(textOf(name, each));
    return texts;
}

UUID idOf(const std::string& name, const BusValue& value) {
    const std::optional<UUID> id = UUID::parse(textOf(name, value));
    if (!id)
        refuse(fmt::format("{} must be an id", name));
    return *id;
}

DateComponents dateOf(const std::string& name, const BusValue& value, const Calendar& calendar) {
    const auto components = parseDateComponents(textOf(name, value), calendar);
    if (!components)
        refuse(fmt::format("{} must be a date such as 2026-01-31 or 2026-01-31T09:05", name));
    return *components;
}

/// What both intents know by the same name; false for another one.
template <typename Parameters>
bool takeCommon(Parameters& parameters, const std::string& name, const BusValue& value, const Calendar& calendar) {
    if (name == "list")
        parameters.list = idOf(name, value);
    else if (name == "note")
        parameters.note = textOf(name, value);
    else if (name == "isFlagged")
        parameters.isFlagged = flagOf(name, value);
    else if (name == "tags")
        parameters.tags = textsOf(name, value);
    else if (name == "urls")
        parameters.urls = textsOf(name, value);
    else if (name == "dueDate")
        parameters.dueDate = dateOf(name, value, calendar);
    else if (name == "recurrence") // whatever it says, it isn't kept
        parameters.recurrence = true;
    else if (name == "locationTrigger")
        parameters.locationTrigger = true;
    else
        return false;
    return true;
}

[[noreturn]] void refuseUnknown(const std::string& name) {
    refuse(fmt::format("there is no parameter \"{}\"", name));
}

CreateReminderParameters creationOf(const BusMessage& message, const Calendar& calendar) {
    CreateReminderParameters parameters{.title = textOf("title", message.values.at(0))};
    for (const auto& [name, value] : *message.values.at(1).asDictionary())
        if (name == "images")
            parameters.images = listOf(name, value).size();
        else if (name != "section" && !takeCommon(parameters, name, value, calendar)) // there are no sections
            refuseUnknown(name);
    return parameters;
}

UpdateReminderParameters updateOf(const BusMessage& message, const Calendar& calendar) {
    UpdateReminderParameters parameters{.target = idOf("taskId", message.values.at(0))};
    for (const auto& [name, value] : *message.values.at(1).asDictionary())
        if (name == "title")
            parameters.title = textOf(name, value);
        else if (name == "isCompleted")
            parameters.isCompleted = flagOf(name, value);
        else if (!takeCommon(parameters, name, value, calendar))
            refuseUnknown(name);
    return parameters;
}

const char* nameOf(QuillornIntentError::Kind kind) {
    switch (kind) {
    case QuillornIntentError::Kind::storeUnavailable:
        return "com.quillorn.Error.StoreUnavailable";
    case QuillornIntentError::Kind::taskNotFound:
        return "com.quillorn.Error.TaskNotFound";
    default:
        return "com.quillorn.Error.TitleMissing";
    }
}

/// What was thrown, as it is answered.
BusError currentError() {
    try {
        throw;
    } catch (const QuillornIntentError& error) {
        return {nameOf(error.kind()), error.what()};
    } catch (const BusError& error) {
        return error;
    } catch (const std::exception& error) {
        return {"org.freedesktop.DBus.Error.Failed", error.what()};
    }
}

} // namespace

RemindersBusService::RemindersBusService(Bus& bus, ReminderIntents& intents, const Calendar& calendar)
    : m_intents(intents),
      m_calendar(calendar),
      m_object(bus.exportObject(objectPath, interface())),
      m_name(bus.ownName(serviceName, [this](bool isOurs) { m_hasName = isOurs; })) {}

BusInterface RemindersBusService::interface() {
    return {interfaceName,
            {{"CreateReminder",
              {{"s", "title"}, {"a{sv}", "parameters"}},
              {{"s", "sentence"}, {"s", "taskId"}},
              [this](const BusMessage& message, const Responder& answer) {
                  m_tasks.start(createReminder(message, answer));
              }},
             {"UpdateReminder",
              {{"s", "taskId"}, {"a{sv}", "parameters"}},
              {{"s", "sentence"}},
              [this](const BusMessage& message, const Responder& answer) {
                  m_tasks.start(updateReminder(message, answer));
              }},
             {"SuggestedLists",
              {},
              {{"a(sss)", "lists"}},
              [this](const BusMessage&, const Responder& answer) { m_tasks.start(suggestedLists(answer)); }},
             {"FindReminders",
              {{"s", "text"}},
              {{"a(ss)", "reminders"}},
              [this](const BusMessage& message, const Responder& answer) {
                  m_tasks.start(findReminders(message, answer));
              }}}};
}

Task<> RemindersBusService::createReminder(BusMessage message, Responder answer) {
    try {
        CreateReminderParameters parameters = creationOf(message, m_calendar);
        const SpokenResult spoken = co_await m_intents.create(std::move(parameters));
        answer(BusMessage{"ss", {spoken.sentence, spoken.taskId.string()}});
    } catch (...) {
        answer(currentError());
    }
}

Task<> RemindersBusService::updateReminder(BusMessage message, Responder answer) {
    try {
        UpdateReminderParameters parameters = updateOf(message, m_calendar);
        const SpokenResult spoken = co_await m_intents.update(std::move(parameters));
        answer(BusMessage{"s", {spoken.sentence}});
    } catch (...) {
        answer(currentError());
    }
}

Task<> RemindersBusService::suggestedLists(Responder answer) {
    try {
        BusValue::List rows;
        const ReminderIntents::Lists lists = co_await m_intents.suggestedLists();
        for (const QuillornReminderList& list : lists)
            rows.emplace_back(BusValue::List{list.id.string(), list.name, list.clientName.value_or("")});
        answer(BusMessage{"a(sss)", {std::move(rows)}});
    } catch (...) {
        answer(currentError());
    }
}

Task<> RemindersBusService::findReminders(BusMessage message, Responder answer) {
    try {
        BusValue::List rows;
        std::string text = textOf("text", message.values.at(0));
        const ReminderIntents::Reminders found = co_await m_intents.reminders(std::move(text));
        for (const QuillornReminder& reminder : found)
            rows.emplace_back(BusValue::List{reminder.id.string(), reminder.title});
        answer(BusMessage{"a(ss)", {std::move(rows)}});
    } catch (...) {
        answer(currentError());
    }
}

} // namespace quillorn
