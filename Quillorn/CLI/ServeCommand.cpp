#include "API/APIServer.h"
#include "App/BusServices.h"
#include "App/MachineServices.h"
#include "App/WindowOnBus.h"
#include "CLI/Commands.h"
#include "CLI/KeyInput.h"
#include "CLI/Output.h"
#include "CLI/Session.h"
#include "Models/Settings.h"
#include "Platform/Process.h"
#include "Platform/TerminationSignals.h"
#include "Services/BackupService.h"

#include <fmt/core.h>
#include <stdexcept>

namespace quillorn {

namespace {

/// The key for this run, if one was given.
std::optional<std::string> givenKey(const ServeOptions& options, const ProcessInfo& process) {
    std::optional<std::string> key = options.key;
    if (options.keyFile)
        key = readValue(*options.keyFile, "API key");
    else if (const auto found = process.environment.find("QUILLORN_API_KEY");
             !key && found != process.environment.end() && !found->second.empty())
        key = found->second;
    if (key && !isFit(Json(*key), setting("apiAuthKey")))
        throw std::runtime_error(fmt::format("the API key must be {}", describe(setting("apiAuthKey"))));
    return key;
}

APIServerOptions combine(const ServeOptions& options, std::optional<std::string> key, SettingsStore& settings) {
    APIServerOptions combined = APIServerOptions::fromSettings(settings);
    if (options.port)
        combined.port = *options.port;
    combined.externalAccess |= options.external;
    combined.requireAuthLocal |= options.requireAuth;
    if (key)
        combined.authKey = std::move(*key);
    return combined;
}

} // namespace

ExitStatus serve(const ServeOptions& options, const ProcessInfo& process) {
    std::optional<std::string> key = givenKey(options, process);
    Session session(process, QuillornApp::Schedules::run);
    if (session.hasFailed())
        return ExitStatus::failure;
    const APIServerOptions serverOptions = combine(options, std::move(key), session.settings());
    // The threads that there are by now take no signals, as it has to be.
    const TerminationSignals signals([&](int) { session.mainQueue().stop(); });
    raiseDescriptorLimit();

    QuillornApp& app = session.app();
    APIServer& server = app.apiServer();
    bool isStoreLost = false;
    app.onStoreLost = [&] {
        isStoreLost = true;
        session.mainQueue().stop();
    };
    BackupService& backups = app.backupService();
    const Observation backupState = backups.observe([&] {
        if (!backups.isBackingUp() && backups.lastError())
            printError(fmt::format("the backup failed: {}", *backups.lastError()));
    });
    const std::unique_ptr<BusServices> busServices = BusServices::of(session.world());
    std::optional<NotificationsIntoWindow> intoWindow;
    if (app.runMode() == RunMode::normal)
        intoWindow.emplace(*session.world().sessionBus(), app.machineServices()->notificationService());
    app.startAPIServer(serverOptions);
    if (!server.hasServer()) {
        printError(server.lastError().value_or("the API server could not be started"));
        return ExitStatus::failure;
    }
    bool failed = false;
    Observation serverState = server.observe([&] {
        if (server.isRunning() || !server.lastError())
            return;
        failed = true; // and why is in the log
        session.mainQueue().stop();
    });
    session.mainQueue().run();
    serverState = {};
    if (!failed)
        server.stop();
    return failed || isStoreLost ? ExitStatus::failure : ExitStatus::success;
}

} // namespace quillorn
