#pragma once

#include "Reminders/LoopbackModel.h"
#include "Reminders/ReminderImportService.h"
#include "Reminders/ReminderIntents.h"
#include "Reminders/SiriProjectRouter.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace quillorn {

class Paths;

/// All that has to do with reminders, put together: their import, and what other programs may ask for.
class ReminderServices {
  public:
    struct Surroundings {
        ModelContainer& container;
        /// Null where nothing may be imported.
        ModelContainer* importsInto;
        const Clock& clock;
        const Calendar& calendar;
        const Text& text;
        SettingsStore& settings;
        MainQueue& mainQueue;
        Background& background;
        SystemLog& log;
        HttpClient& httpClient;
        ReminderStore& reminders;
        std::filesystem::path recordsFile;
        bool schedule;
        /// As ReminderIntentsEnvironment has them.
        std::function<void(const UUID& task)> refreshNotification;
        std::function<void(const std::string& identifier)> removeNotification;
    };

    explicit ReminderServices(const Surroundings& surroundings);

    ReminderImportService& importService() { return m_import; }
    ReminderIntents& intents() { return m_intents; }

  private:
    ReminderImportService m_import;
    LoopbackModel m_model;
    SiriProjectRouter m_router;
    ReminderIntents m_intents;
};

/// The user's reminders on this machine: in the folder of the setting, else in the one that programs for to-dos share.
std::unique_ptr<ReminderStore> makeReminderStore(SettingsStore& settings, const Paths& paths, const Calendar& calendar,
                                                 const Clock& clock, SystemLog& log);

} // namespace quillorn
