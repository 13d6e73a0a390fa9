#include "App/QuillornApp.h"

#include "AI/AIEnvironment.h"
#include "API/APIServer.h"
#include "App/DataMigration.h"
#include "App/MachineServices.h"
#include "App/ReminderServices.h"
#include "MCP/MCPServer.h"
#include "Models/SchemaVersions.h"
#include "Models/Settings.h"
#include "Platform/AtomicFile.h"
#include "Platform/Background.h"
#include "Platform/FileWatch.h"
#include "Platform/HttpClient.h"
#include "Platform/MainQueue.h"
#include "Platform/Paths.h"
#include "Platform/ReminderStore.h"
#include "Platform/SettingsStore.h"
#include "Platform/SystemLog.h"
#include "Services/BackupFolder.h"
#include "Services/BackupService.h"
#include "Services/ThoughtkegClient.h"
#include "Services/TimerService.h"
#include "Store/StoreError.h"

#include <chrono>
#include <fmt/core.h>
#include <system_error>
#include <utility>

namespace quillorn {

namespace {

constexpr const char* groupContainer = "group.com.quillorn.app";
constexpr const char* cloudContainer = "iCloud.com.quillorn.app";

/// Between the loss of the store and the end: for the answers that say so.
constexpr std::chrono::milliseconds timeToAnswer{250};

void checkReadAtStart(const SettingsStore& store) {
    if (const std::string fault = store.fault(); !fault.empty())
        throw std::runtime_error(fault);
    for (const Setting& each : settingsCatalogue) {
        const auto stored = each.isReadAtStart ? store.storedValue(each.key) : std::nullopt;
        const bool isNumber = stored && each.type == SettingType::integer && isOfType(*stored, each.type);
        if (stored && !isNumber && !isFit(*stored, each))
            throw std::runtime_error(
                fmt::format("API server not started: the setting {} has to be {}", each.key, describe(each)));
    }
}

} // namespace

std::filesystem::path storeFile(const Paths& paths) {
    return paths.applicationSupport() / "Quillorn" / storeName;
}

APIServerOptions APIServerOptions::fromSettings(SettingsStore& store) {
    checkReadAtStart(store);
    const Settings settings(store);
    const auto stored = store.storedValue("apiPort");
    const std::int64_t* port = stored ? stored->asInteger() : nullptr;
    return {
        .port = port != nullptr && *port != 0 ? *port : settings.integer(setting("apiPort")),
        .externalAccess = settings.boolean(setting("apiExternalAccess")),
        .requireAuthLocal = settings.boolean(setting("apiRequireAuthLocal")),
        .authKey = settings.text(setting("apiAuthKey")),
    };
}

QuillornApp::QuillornApp(AppEnvironment environment, const ProcessInfo& process, ServerStart serverStart,
                         Schedules schedules)
    : m_environment(std::move(environment)) {
    const auto [isTesting, isDemo] = LaunchFlags::of(process);
    if (isTesting || isDemo)
        m_environment.log.log(fmt::format("Quillorn launch: isDemo={} isTesting={}", isDemo, isTesting));
    // Before any service reads them.
    registerNotificationDefaults(m_environment.settings);

    if (isTesting) {
        m_runMode = RunMode::test;
        openInMemory("Failed to build in-memory test container: ");
    } else if (isDemo) {
        m_runMode = RunMode::demo;
        openInMemory("Failed to build in-memory demo container: ");
    } else {
        openStore(schedules);
    }
    createServices(schedules);
    if (m_runMode == RunMode::normal && serverStart == ServerStart::bySetting &&
        Settings(m_environment.settings).boolean(setting("apiAutoStart")))
        startAPIServerBySettings();
}

QuillornApp::~QuillornApp() = default;

void QuillornApp::openInMemory(const std::string& fatalWords) {
    if (m_storeFile.empty())
        m_storeFile = "/dev/null";
    try {
        m_container =
            std::make_unique<ModelContainer>(currentSchema(), nullptr, ModelConfiguration{},
                                             StoreEnvironment{m_environment.random, m_environment.notifications});
    } catch (const std::exception& error) {
        throw LaunchError(fatalWords + error.what());
    }
}

void QuillornApp::openStore(Schedules schedules) {
    const DataMigration migration{m_environment.paths, m_environment.settings, m_environment.log, m_environment.clock};
    migration.migrateOldLocation();
    migration.migrateFromUnsandboxedLocation();
    m_storeFile = storeFile(m_environment.paths);
    const std::filesystem::path folder = m_storeFile.parent_path();
    try {
        createPrivateFolder(folder);
    } catch (const std::system_error&) {
        // Opening the store says what is wrong.
    }
    std::error_code ignored;
    if (!std::filesystem::exists(m_storeFile, ignored))
        fetchStoreFromGroupContainer(folder);
    try {
        m_container = openContainer({.name = "Quillorn",
                                     .url = m_storeFile,
                                     .cloudContainerIdentifier = cloudContainer,
                                     .keepsShortLog = schedules == Schedules::rest},
                                    {m_environment.random, m_environment.notifications,
                                     [this](const StoreLostError& error) { storeWasLost(error); }},
                                    m_environment.log);
    } catch (const std::exception& error) {
        m_environment.log.log(fmt::format("QuillornApp: ModelContainer failed to open: {}", error.what()));
        m_launchFailureMessage = error.what();
        m_runMode = RunMode::fallback;
        openInMemory("Could not open the data store or create a fallback container: ");
    }
}

/// On any thread.
void QuillornApp::storeWasLost(const StoreLostError& error) {
    if (m_isStoreLost.exchange(true))
        return;
    m_environment.log.log(fmt::format("QuillornApp: the data store was lost: {}", error.what()));
    m_environment.mainQueue.post([this, alive = std::weak_ptr(m_isAlive)] {
        if (alive.expired())
            return;
        m_environment.mainQueue.after(timeToAnswer, [this, alive] {
            if (!alive.expired() && onStoreLost)
                onStoreLost();
        });
    });
}

/// Carries over the data of builds that kept the store where several programs share it; the files there stay.
void QuillornApp::fetchStoreFromGroupContainer(const std::filesystem::path& folder) const {
    const auto group = m_environment.paths.groupContainer(groupContainer);
    std::error_code ignored;
    if (!group || !std::filesystem::exists(*group / storeName, ignored))
        return;
    for (const char* suffix : {"", "-shm", "-wal"}) {
        const std::string name = std::string(storeName) + suffix;
        std::filesystem::copy_file(*group / name, folder / name, ignored);
    }
}

void QuillornApp::createServices(Schedules schedules) {
    m_reminderStore = makeReminderStore(m_environment.settings, m_environment.paths, m_environment.calendar,
                                        m_environment.clock, m_environment.log);
    m_background = std::make_unique<Background>(m_environment.mainQueue);
    m_mainContext = std::make_unique<MainContext>(*m_container, m_environment.mainQueue, m_environment.log);
    if (m_runMode == RunMode::normal && schedules == Schedules::run)
        m_storeWatch = watchFile(m_container->configuration().url->string() + "-wal",
                                 [context = m_mainContext.get()] { context->noticeFileChange(); });
    m_httpClient = std::make_unique<HttpClient>(m_environment.mainQueue);
    m_backupService = std::make_unique<BackupService>(
        BackupEnvironment{
            .clock = m_environment.clock,
            .calendar = m_environment.calendar,
            .settings = m_environment.settings,
            .mainQueue = m_environment.mainQueue,
            .background = *m_background,
            .log = m_environment.log,
        },
        m_storeFile, *m_container, m_runMode == RunMode::normal && schedules == Schedules::run);
    createReminderServices(schedules);
    m_apiServer = std::make_unique<APIServer>(APIServerEnvironment{
        .container = *m_container,
        .clock = m_environment.clock,
        .text = m_environment.text,
        .paths = m_environment.paths,
        .log = m_environment.log,
        .mainQueue = m_environment.mainQueue,
        .background = *m_background,
        .version = m_environment.version,
    });
    m_apiServer->makeMCPHandler = [this] {
        const auto server = std::make_shared<MCPServer>(MCPEnvironment{
            *m_container, m_environment.clock, m_environment.text, m_environment.calendar, m_environment.random});
        return [server](const HttpRequest& request) { return server->handle(request.body); };
    };
    if (m_environment.machine != nullptr)
        createMachineServices(schedules);
    if (m_runMode == RunMode::normal)
        m_thoughtkegClient = std::make_unique<ThoughtkegClient>(
            ThoughtkegEnvironment{*m_httpClient, m_environment.notifications, m_environment.settings,
                                  m_environment.mainQueue, m_environment.log});
}

void QuillornApp::createReminderServices(Schedules schedules) {
    const bool isUsers = m_runMode == RunMode::normal;
    m_reminderServices = std::make_unique<ReminderServices>(ReminderServices::Surroundings{
        .container = *m_container,
        .importsInto = isUsers ? m_container.get() : nullptr,
        .clock = m_environment.clock,
        .calendar = m_environment.calendar,
        .text = m_environment.text,
        .settings = m_environment.settings,
        .mainQueue = m_environment.mainQueue,
        .background = *m_background,
        .log = m_environment.log,
        .httpClient = *m_httpClient,
        .reminders = *m_reminderStore,
        .recordsFile = isUsers ? reminderRecordsFile(m_environment.paths) : std::filesystem::path(),
        .schedule = isUsers && schedules == Schedules::run,
        .refreshNotification =
            [this](const UUID& task) {
                if (m_machineServices)
                    m_machineServices->notificationService().reschedule(task);
            },
        .removeNotification =
            [this](const std::string& identifier) {
                if (m_environment.machine != nullptr)
                    m_environment.machine->notifications.removePending({identifier});
            },
    });
}

void QuillornApp::createMachineServices(Schedules schedules) {
    const AppEnvironment& outside = m_environment;
    m_machineServices = std::make_unique<MachineServices>(
        *outside.machine,
        NotificationEnvironment{outside.machine->notifications, outside.clock, outside.calendar, outside.settings,
                                outside.mainQueue, outside.log},
        *m_mainContext, *m_background);
    NotificationService& notifications = m_machineServices->notificationService();
    notifications.onStart = [this](ProjectTask& task) { startTimer(task); };
    if (m_runMode == RunMode::normal && schedules == Schedules::run)
        notifications.follow();
}

void QuillornApp::startTimer(ProjectTask& task) {
    if (m_timerService) {
        m_timerService->start(task, mainContext());
    } else {
        // Nobody looks at the timer, so it need not tick here; in the store it runs on.
        TimerService passing(m_environment.mainQueue, m_environment.clock);
        passing.resumeRunningEntry(mainContext());
        passing.start(task, mainContext());
    }
    m_mainContext->save();
}

TimerService& QuillornApp::timerService() {
    if (!m_timerService) {
        m_timerService = std::make_unique<TimerService>(m_environment.mainQueue, m_environment.clock);
        m_timerFollowsStore = m_mainContext->observe(
            [this](const ChangeSet& changes) { m_timerService->storeDidChange(changes, mainContext()); });
    }
    return *m_timerService;
}

AIEnvironment QuillornApp::aiEnvironment() {
    return {*m_httpClient,       m_environment.settings, mainContext(),     m_environment.mainQueue,
            m_environment.clock, m_environment.calendar, m_environment.text};
}

ReminderImportService& QuillornApp::reminderImport() {
    return m_reminderServices->importService();
}

ReminderIntents& QuillornApp::reminderIntents() {
    return m_reminderServices->intents();
}

StoreRecovery QuillornApp::storeRecovery() const {
    return {m_launchFailureMessage.value_or(""), backupFolder(m_environment.settings, m_storeFile)};
}

void QuillornApp::startAPIServerBySettings() {
    try {
        startAPIServer(APIServerOptions::fromSettings(m_environment.settings));
    } catch (const std::runtime_error& error) {
        m_apiServer->setLastError(error.what());
    }
}

void QuillornApp::startAPIServer(const APIServerOptions& options) {
    if (options.port < 0 || options.port > 65535) {
        m_apiServer->setLastError("Port must be between 1 and 65535");
        return;
    }
    m_apiServer->start(static_cast<std::uint16_t>(options.port), options.externalAccess, options.authKey,
                       options.requireAuthLocal);
}

} // namespace quillorn
