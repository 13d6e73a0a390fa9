#include "API/APIServer.h"
#include "App/QuillornApp.h"
#include "CLI/Commands.h"
#include "Models/Settings.h"
#include "Platform/Calendar.h"
#include "Platform/Clock.h"
#include "Platform/Crypto.h"
#include "Platform/NotificationCenter.h"
#include "Platform/Paths.h"
#include "Platform/Process.h"
#include "Platform/RunLoop.h"
#include "Platform/SettingsStore.h"
#include "Platform/SystemLog.h"
#include "Platform/TerminationSignals.h"
#include "Platform/Text.h"

#include <cstdio>
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
    StandardErrorLog log;
    RunLoop mainQueue(log);
    const TerminationSignals signals([&] { mainQueue.stop(); });
    raiseDescriptorLimit();

    const SystemClock clock;
    SystemRandom random;
    NotificationCenter notifications;
    const Text text(currentLocale());
    const auto paths = systemPaths();
    FileSettings settings(settingsFile(*paths), log);
    QuillornApp app({clock, random, log, notifications, mainQueue, settings, *paths, text, QUILLORN_VERSION}, process,
                    QuillornApp::ServerStart::byCaller);
    if (app.runMode() == RunMode::fallback) {
        fmt::print(stderr, "\n{}", app.storeRecovery().text());
        return ExitStatus::failure;
    }

    APIServer& server = app.apiServer();
    bool failed = false;
    const auto endOnFailure = [&] {
        if (server.isRunning() || !server.lastError())
            return;
        fmt::print(stderr, "quillorn: {}\n", *server.lastError());
        failed = true;
        mainQueue.stop();
    };
    server.onChange = endOnFailure;
    app.startAPIServer(combine(options, settings));
    mainQueue.run();
    server.onChange = nullptr;
    if (!failed)
        server.stop();
    return failed ? ExitStatus::failure : ExitStatus::success;
}

} // namespace quillorn
