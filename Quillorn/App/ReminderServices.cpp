#include "App/ReminderServices.h"

#include "Models/Settings.h"
#include "Platform/Calendar.h"
#include "Platform/Paths.h"
#include "Platform/VdirReminderStore.h"

namespace quillorn {

ReminderServices::ReminderServices(const Surroundings& surroundings)
    : m_import(
          ReminderImportEnvironment{
              .clock = surroundings.clock,
              .calendar = surroundings.calendar,
              .settings = surroundings.settings,
              .mainQueue = surroundings.mainQueue,
              .background = surroundings.background,
              .log = surroundings.log,
              .httpClient = surroundings.httpClient,
              .reminders = surroundings.reminders,
          },
          surroundings.recordsFile, surroundings.importsInto, surroundings.schedule),
      m_model(surroundings.httpClient, surroundings.settings),
      m_router(m_model, surroundings.mainQueue, surroundings.log),
      m_intents(ReminderIntentsEnvironment{
          .container = &surroundings.container,
          .background = surroundings.background,
          .clock = surroundings.clock,
          .calendar = surroundings.calendar,
          .text = surroundings.text,
          .settings = surroundings.settings,
          .router = m_router,
          .refreshNotification = surroundings.refreshNotification,
          .removeNotification = surroundings.removeNotification,
      }) {}

std::unique_ptr<ReminderStore> makeReminderStore(SettingsStore& settings, const Paths& paths, const Calendar& calendar,
                                                 const Clock& clock, SystemLog& log) {
    const auto root = [&settings, &paths]() -> std::filesystem::path {
        const std::string chosen = Settings(settings).text(setting("reminderFolderPath"));
        return chosen.empty() ? paths.applicationSupport() / "calendars" : std::filesystem::path(chosen);
    };
    return std::make_unique<VdirReminderStore>(root, [&calendar] { return calendar.timeZone(); }, clock, log);
}

} // namespace quillorn
