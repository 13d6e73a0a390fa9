#include "AI/AIService.h"
#include "CLI/AICommands.h"
#include "CLI/Output.h"
#include "Models/Settings.h"
#include "Platform/HttpClient.h"
#include "Platform/Leftovers.h"
#include "Platform/Paths.h"
#include "Platform/RunLoop.h"
#include "Platform/SettingsStore.h"
#include "Platform/SystemLog.h"
#include "Platform/TerminationSignals.h"

#include <fmt/core.h>

namespace quillorn {

namespace {

struct UserSettings {
    std::unique_ptr<Paths> paths = systemPaths();
    StandardErrorLog log;
    FileSettings store{settingsFile(*paths), log};
};

/// What the service answers to the question; throws what it throws.
template <typename Result>
Result askService(Task<Result> (AIService::*question)()) {
    const TerminationSignals signals(endBySignal);
    UserSettings settings;
    RunLoop loop(settings.log);
    HttpClient client(loop);
    AIService service(client, settings.store);
    Outcome<Result> outcome;
    const auto ask = [](AIService& asked, Task<Result> (AIService::*of)(), Outcome<Result>& into,
                        RunLoop& until) -> Task<> {
        try {
            into.succeed(co_await (asked.*of)());
        } catch (...) {
            into.fail(std::current_exception());
        }
        until.stop();
    };
    TaskScope scope;
    scope.start(ask(service, question, outcome, loop));
    loop.run();
    return outcome.take();
}

} // namespace

ExitStatus showAI(bool json) {
    UserSettings user;
    const Settings settings(user.store);
    const std::string endpoint = settings.text(setting("aiEndpoint"));
    const std::string model = settings.text(setting("aiModel"));
    const std::string effort = settings.text(setting("aiReasoningEffort"));
    const bool hasKey = !settings.text(setting("aiApiKey")).empty();
    const bool isConfigured = AIService::isConfigured(endpoint, model);
    if (json)
        printJson(Json::Object{{"configured", isConfigured},
                               {"endpoint", endpoint},
                               {"model", model},
                               {"hasKey", hasKey},
                               {"reasoningEffort", effort}});
    else
        fmt::print("{}\nEndpoint   {}\nModel      {}\nKey        {}\nReasoning  {}\n",
                   isConfigured ? "Configured" : "Not configured: set aiEndpoint and aiModel", shown(endpoint),
                   shown(model), hasKey ? "set" : "none", effort.empty() ? "Default" : shown(effort));
    return ExitStatus::success;
}

ExitStatus listModels(bool json) {
    const std::vector<std::string> models = askService(&AIService::fetchModels);
    if (json)
        printJson(Json::Array(models.begin(), models.end()));
    else
        for (const std::string& model : models)
            fmt::print("{}\n", shown(model));
    return ExitStatus::success;
}

ExitStatus testAI(bool json) {
    const std::string result = askService(&AIService::testConnection);
    if (json)
        printJson(Json::Object{{"result", result}});
    else
        fmt::print("{}\n", shown(result));
    return ExitStatus::success;
}

} // namespace quillorn
