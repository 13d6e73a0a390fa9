#pragma once

#include "App/RunMode.h"
#include "App/StoreRecovery.h"
#include "Store/MainContext.h"
#include "Store/ModelContainer.h"

#include <atomic>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

namespace quillorn {

struct AIEnvironment;
class APIServer;
class Background;
class BackupService;
class Calendar;
class Clock;
class FileWatch;
class HttpClient;
struct MachineSignals;
class MachineServices;
class MainQueue;
class NotificationCenter;
class Paths;
class ProjectTask;
class RandomSource;
class ReminderImportService;
class ReminderIntents;
class ReminderServices;
class ReminderStore;
class SettingsStore;
class SystemLog;
class Text;
class ThoughtkegClient;
class TimerService;

/// A launch that can't go on at all: not even an empty store could be made.
class LaunchError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// The outside world as the application sees it. Referred to, not owned.
struct AppEnvironment {
    const Clock& clock;
    RandomSource& random;
    SystemLog& log;
    NotificationCenter& notifications;
    MainQueue& mainQueue;
    SettingsStore& settings;
    const Paths& paths;
    const Text& text;
    const Calendar& calendar;
    /// Of the program.
    std::string version;
    /// For programs that stay; null for commands.
    const MachineSignals* machine = nullptr;
};

/// The file of the user's store. Throws std::runtime_error for a user without a home.
std::filesystem::path storeFile(const Paths& paths);

/// How the API server is to listen.
struct APIServerOptions {
    /// 0 takes any free port.
    std::int64_t port = 18080;
    bool externalAccess = false;
    bool requireAuthLocal = false;
    std::string authKey{};

    /// A stored port of 0 counts as 18080; one out of range is for the start to refuse. Throws std::runtime_error when
    /// the settings can't be read, or hold something else than they may: a server that asks for a key must not come up
    /// without.
    static APIServerOptions fromSettings(SettingsStore& store);
};

/// The application object: opens the store, or a substitute, and owns everything long-lived. Lives on the main thread.
class QuillornApp {
  public:
    enum class ServerStart { bySetting, byCaller };
    /// Whether a launch in normal mode does at set times what is to be done: for programs that stay, not for commands.
    enum class Schedules { run, rest };

    /// Runs the whole start-up; a store that can't be opened leads to fallback mode. Throws LaunchError, and
    /// std::runtime_error for a user without a home.
    QuillornApp(AppEnvironment environment, const ProcessInfo& process,
                ServerStart serverStart = ServerStart::bySetting, Schedules schedules = Schedules::run);
    ~QuillornApp();
    QuillornApp(const QuillornApp&) = delete;
    QuillornApp& operator=(const QuillornApp&) = delete;

    RunMode runMode() const { return m_runMode; }
    ModelContainer& container() { return *m_container; }
    /// What follows the store on the main thread, for screens.
    MainContext& mainStore() { return *m_mainContext; }
    /// The context of the main thread.
    ModelContext& mainContext() { return m_mainContext->context(); }
    /// For work that may use the container.
    Background& background() { return *m_background; }
    BackupService& backupService() { return *m_backupService; }
    APIServer& apiServer() { return *m_apiServer; }
    /// Does nothing but in normal mode: what it remembers is the user's.
    ReminderImportService& reminderImport();
    ReminderIntents& reminderIntents();
    /// Made on first use.
    TimerService& timerService();
    /// Null without signals of the machine.
    MachineServices* machineServices() { return m_machineServices.get(); }
    /// Null but in normal mode.
    ThoughtkegClient* thoughtkegClient() { return m_thoughtkegClient.get(); }
    /// For conversations with a model; they must not outlive this object.
    AIEnvironment aiEnvironment();

    /// Present in fallback mode only.
    const std::optional<std::string>& launchFailureMessage() const { return m_launchFailureMessage; }
    /// What to show in fallback mode.
    StoreRecovery storeRecovery() const;

    /// Called on the main thread when the store's files were removed or replaced under the program, a moment after it
    /// was logged: whoever wrote just then has had the answer. The program should end, as nothing can be saved.
    std::function<void()> onStoreLost;

    /// Starts the API server, or sets its lastError where the options make no sense.
    void startAPIServer(const APIServerOptions& options);

  private:
    void startAPIServerBySettings();
    void openInMemory(const std::string& fatalWords);
    void openStore(Schedules schedules);
    void fetchStoreFromGroupContainer(const std::filesystem::path& folder) const;
    void storeWasLost(const StoreLostError& error);
    void createServices(Schedules schedules);
    void createReminderServices(Schedules schedules);
    void createMachineServices(Schedules schedules);
    /// Starts the timer on the task, and saves.
    void startTimer(ProjectTask& task);

    AppEnvironment m_environment;
    RunMode m_runMode = RunMode::normal;
    std::filesystem::path m_storeFile;
    /// For what is posted to the main queue, which may get to it when this object is gone.
    std::shared_ptr<const bool> m_isAlive = std::make_shared<const bool>(true);
    std::atomic<bool> m_isStoreLost = false;
    std::unique_ptr<ModelContainer> m_container;
    std::optional<std::string> m_launchFailureMessage;
    std::unique_ptr<ReminderStore> m_reminderStore;
    /// Goes before the container and the reminders, which its work may use, and after the services whose tasks wait for
    /// it.
    std::unique_ptr<Background> m_background;
    std::unique_ptr<MainContext> m_mainContext;
    std::unique_ptr<FileWatch> m_storeWatch;
    std::unique_ptr<HttpClient> m_httpClient;
    std::unique_ptr<ThoughtkegClient> m_thoughtkegClient;
    std::unique_ptr<BackupService> m_backupService;
    std::unique_ptr<ReminderServices> m_reminderServices;
    std::unique_ptr<APIServer> m_apiServer;
    std::unique_ptr<TimerService> m_timerService;
    Observation m_timerFollowsStore;
    std::unique_ptr<MachineServices> m_machineServices;
};

} // namespace quillorn
