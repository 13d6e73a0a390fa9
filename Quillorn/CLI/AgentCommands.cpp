#include "CLI/AgentCommands.h"

#include "CLI/Output.h"
#include "CLI/PortProbe.h"
#include "CLI/Session.h"
#include "Models/Settings.h"
#include "Platform/Pasteboard.h"
#include "Platform/Terminal.h"
#include "Records/RecordChoice.h"
#include "Services/TaskAgentClipboard.h"

#include <CLI/CLI.hpp>
#include <array>
#include <cstdio>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <unistd.h>

namespace quillorn {

namespace {

std::string machineName() {
    std::array<char, 256> name{};
    return ::gethostname(name.data(), name.size() - 1) == 0 && name[0] != '\0' ? name.data() : "localhost";
}

/// Running is what answers as Quillorn where the settings say.
APIConfig configOf(SettingsStore& settings) {
    APIConfig config = APIConfig::fromSettings(settings, machineName(), false);
    config.isRunning = config.port > 0 && config.port <= 65535 &&
                       probePort(static_cast<std::uint16_t>(config.port)) == PortUse::quillorn;
    return config;
}

APIConfig configOfUser() {
    StandardErrorLog log;
    const auto paths = systemPaths();
    FileSettings settings(settingsFile(*paths), log);
    return APIConfig::fromSettings(settings, machineName(), false);
}

void print(std::string_view text) {
    fmt::print("{}\n", textFor(stdout, text, LineEnds::kept));
}

ExitStatus brief(const std::string& task, bool copies, const ProcessInfo& process) {
    Session session(process);
    if (session.hasFailed())
        return ExitStatus::failure;
    ModelContext context(session.app().container());
    const std::string text =
        TaskAgentClipboard::brief(chooseTask(context, task, session.text()), configOf(session.settings()),
                                  session.clock().now(), session.calendar());
    if (copies)
        copyToPasteboard(text);
    else
        print(text);
    return ExitStatus::success;
}

void addBrief(CLI::App& app, Action& chosen) {
    auto task = std::make_shared<std::string>();
    auto copies = std::make_shared<bool>(false);
    CLI::App* command = app.add_subcommand("brief", "Write a brief of a task for a coding agent");
    command->footer("It tells all of the task and how to reach this program, with the API key where the server asks "
                    "for one.");
    command->add_option("TASK", *task, "A task: its id, the beginning of it, or its title")->required()->type_name("");
    command->add_flag("--copy", *copies, "To the clipboard instead");
    command->callback(
        [=, &chosen] { chosen = [=](const ProcessInfo& process) { return brief(*task, *copies, process); }; });
}

void addAgent(CLI::App& app, Action& chosen) {
    CLI::App* agent = app.add_subcommand("agent", "Texts that make a coding agent work with Quillorn");
    agent->require_subcommand(0, 1);
    const auto add = [&](const char* name, const char* words, const std::function<std::string()>& text) {
        agent->add_subcommand(name, words)->callback([=, &chosen] {
            chosen = [=](const ProcessInfo&) {
                print(text());
                return ExitStatus::success;
            };
        });
    };
    add("snippet", "The entry for a client's list of MCP servers, with the key if there is one",
        [] { return TaskAgentClipboard::settingsSnippet(configOfUser()); });
    add("directive", "What a project's notes for an agent say of Quillorn",
        [] { return std::string(TaskAgentClipboard::directive()); });

    auto client = std::make_shared<std::string>("generic");
    CLI::App* config = agent->add_subcommand("config", "What the configuration of a client wants for Quillorn");
    config->add_option("--client", *client, "Which client: " + fmt::format("{}", fmt::join(agentClients, ", ")))
        ->check(CLI::IsMember(std::vector<std::string>(agentClients.begin(), agentClients.end())))
        ->type_name("NAME");
    config->callback([=, &chosen] {
        chosen = [=](const ProcessInfo&) {
            print(TaskAgentClipboard::clientConfig(*client, configOfUser()));
            return ExitStatus::success;
        };
    });
}

} // namespace

void addAgentCommands(CLI::App& app, Action& chosen) {
    addBrief(app, chosen);
    addAgent(app, chosen);
}

} // namespace quillorn
