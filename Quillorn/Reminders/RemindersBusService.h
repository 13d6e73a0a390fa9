#pragma once

#include "Platform/Bus.h"
#include "Platform/Task.h"
#include "Reminders/ReminderIntents.h"

namespace quillorn {

class Calendar;

/// Offers the intents to other programs: com.quillorn.Quillorn, /com/quillorn/Quillorn, com.quillorn.Reminders1.
/// Belongs to the main thread. Where another process has the name, this one goes without until it is free.
class RemindersBusService {
  public:
    static constexpr const char* serviceName = "com.quillorn.Quillorn";
    static constexpr const char* objectPath = "/com/quillorn/Quillorn";
    static constexpr const char* interfaceName = "com.quillorn.Reminders1";

    /// All of it has to outlive this object.
    RemindersBusService(Bus& bus, ReminderIntents& intents, const Calendar& calendar);
    ~RemindersBusService() = default;
    RemindersBusService(const RemindersBusService&) = delete;
    RemindersBusService& operator=(const RemindersBusService&) = delete;

    bool hasName() const { return m_hasName; }

  private:
    using Responder = BusMethod::Responder;

    BusInterface interface();
    Task<> createReminder(BusMessage message, Responder answer);
    Task<> updateReminder(BusMessage message, Responder answer);
    Task<> suggestedLists(Responder answer);
    Task<> findReminders(BusMessage message, Responder answer);

    ReminderIntents& m_intents;
    const Calendar& m_calendar;
    bool m_hasName = false;
    TaskScope m_tasks;
    Observation m_object;
    Observation m_name;
};

} // namespace quillorn
