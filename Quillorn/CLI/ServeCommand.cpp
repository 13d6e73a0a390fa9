#include "API/APIServer.h"
#include "CLI/Commands.h"
#include "CLI/Output.h"
#include "CLI/Session.h"
#include "Platform/Process.h"
#include "Platform/TerminationSignals.h"
#include "Services/BackupService.h"
#include "Services/TimerService.h"

#include <fmt/core.h>

namespace quillorn {

namespace {

APIServerOptions combine(const ServeOptions& options, SettingsStore& settings) {
    APIServerOptions combined = APIServerOptions::fromSettings(settings);
    if (options.port)
        combined.port = *options.port;
    combined.externalAccess |= options.external;
    combined.requireAuthLocal |= options.requireAuth;
    if (options.key)
        combined.authKey = *options.key;
    return combined;
}

} // namespace

ExitStatus serve(const ServeOptions& options, const ProcessInfo& process) {
    Session session(process, QuillornApp::Schedules::run);
    if (session.hasFailed())
        return ExitStatus::failure;
    // No thread has been started so far, as it has to be.
    const TerminationSignals signals([&](int) { session.mainQueue().stop(); });
    raiseDescriptorLimit();

    QuillornApp& app = session.app();
    APIServer& server = app.apiServer();
    bool failed = false;
    Observation serverState = server.observe([&] {
        if (server.isRunning() || !server.lastError())
            return;
        failed = true;
        session.mainQueue().stop();
        printError(*server.lastError());
    });
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
    app.startAPIServer(combine(options, session.settings()));
    session.mainQueue().run();
    serverState = {};
    if (!failed)
        server.stop();
    return failed || isStoreLost ? ExitStatus::failure : ExitStatus::success;
}

} // namespace quillorn
