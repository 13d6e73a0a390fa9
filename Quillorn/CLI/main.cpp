#include "CLI/Commands.h"
#include "Platform/Process.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <fmt/core.h>
#include <functional>

// NOLINTNEXTLINE(readability-redundant-declaration): POSIX leaves it to the program, only glibc has it in a header
extern char** environ;

namespace quillorn {
namespace {

ProcessInfo describeProcess(int count, char** arguments) {
    ProcessInfo process;
    process.arguments.assign(arguments + 1, arguments + count);
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string_view text = *entry;
        const std::size_t equals = text.find('=');
        if (equals != std::string_view::npos)
            process.environment.emplace(text.substr(0, equals), text.substr(equals + 1));
    }
    return process;
}

using Action = std::function<ExitStatus()>;

void addServe(CLI::App& app, Action& action, const ProcessInfo& process) {
    auto options = std::make_shared<ServeOptions>();
    CLI::App* command = app.add_subcommand("serve", "Run the local API server in the foreground");
    command->footer("The options stand in for the settings of this run and change none.\n"
                    "SIGINT (Ctrl-C) and SIGTERM end the server. An empty store in memory is served when\n"
                    "-QUILLORN_DEMO is given or the environment has QUILLORN_DEMO=1.");
    command->add_option("--port", options->port, "Port to listen on; 0 takes any free one")
        ->check(CLI::Range(0, 65535))
        ->type_name("N");
    command->add_flag("--external", options->external, "Let other machines reach the server; needs an API key");
    command->add_flag("--require-auth", options->requireAuth, "Require the API key on this machine too");
    command->add_option("--key", options->key, "The API key; QUILLORN_API_KEY in the environment does the same")
        ->envname("QUILLORN_API_KEY")
        ->type_name("KEY");
    command->callback([&action, &process, options] { action = [=, &process] { return serve(*options, process); }; });
}

void addSettings(CLI::App& app, Action& action) {
    auto options = std::make_shared<SettingsOptions>();
    auto key = std::make_shared<std::string>();
    auto value = std::make_shared<std::string>();
    CLI::App* settings = app.add_subcommand("settings", "Read and change the settings");
    settings->require_subcommand(0, 1);

    CLI::App* list = settings->add_subcommand("list", "Show every setting and its value");
    list->add_flag("--all", options->all, "Also what services and windows keep for themselves");
    list->add_flag("--json", options->json, "Print JSON");
    list->callback([=, &action] { action = [=] { return listSettings(*options); }; });

    CLI::App* get = settings->add_subcommand("get", "Print the value of one setting");
    get->add_option("KEY", *key, "Name of the setting")->required();
    get->add_flag("--json", options->json, "Print JSON");
    get->callback([=, &action] { action = [=] { return getSetting(*key, *options); }; });

    CLI::App* set = settings->add_subcommand("set", "Change one setting");
    set->add_option("KEY", *key, "Name of the setting")->required();
    set->add_option("VALUE", *value, "The new value")->required();
    set->callback([=, &action] { action = [=] { return setSetting(*key, *value); }; });

    CLI::App* reset = settings->add_subcommand("reset", "Go back to the default of one setting");
    reset->add_option("KEY", *key, "Name of the setting")->required();
    reset->callback([=, &action] { action = [=] { return resetSetting(*key); }; });
}

void addTimer(CLI::App& app, Action& action, const ProcessInfo& process) {
    auto task = std::make_shared<std::string>();
    auto json = std::make_shared<bool>(false);
    CLI::App* timer = app.add_subcommand("timer", "Track time on a task, also while the server runs");
    timer->require_subcommand(0, 1);

    CLI::App* start = timer->add_subcommand("start", "Start on a task; a timer that runs is stopped first");
    start->add_option("TASK-ID", *task, "Id of the task")->required();
    start->callback([=, &action, &process] { action = [=, &process] { return startTimer(*task, process); }; });

    CLI::App* stop = timer->add_subcommand("stop", "Stop the running timer");
    stop->callback([&action, &process] { action = [&process] { return stopTimer(process); }; });

    CLI::App* status = timer->add_subcommand("status", "Show the running timer");
    status->add_flag("--json", *json, "Print JSON");
    status->callback([=, &action, &process] { action = [=, &process] { return showTimer(*json, process); }; });
}

void addBackups(CLI::App& app, Action& action, const ProcessInfo& process) {
    auto json = std::make_shared<bool>(false);
    auto quick = std::make_shared<bool>(false);
    auto confirmed = std::make_shared<bool>(false);
    auto file = std::make_shared<std::string>();

    CLI::App* backup = app.add_subcommand("backup", "Take a backup now, also while the server runs");
    backup->add_flag("--json", *json, "Print JSON");
    backup->callback([=, &action, &process] { action = [=, &process] { return backUp(*json, process); }; });

    CLI::App* list = app.add_subcommand("backups", "Show the backups, and whether they are sound");
    list->add_flag("--no-check", *quick, "Don't look into the files, which takes a while for large stores");
    list->add_flag("--json", *json, "Print JSON");
    list->callback([=, &action] { action = [=] { return listBackups(*json, !*quick); }; });

    CLI::App* restored = app.add_subcommand("restore", "Replace all data by that of a backup");
    restored->footer("The present data goes to the folder of the backups first, so a restore can be undone.");
    restored->add_option("FILE", *file, "The backup")->required();
    restored->add_flag("--yes", *confirmed, "Don't ask");
    restored->callback(
        [=, &action, &process] { action = [=, &process] { return restore(*file, *confirmed, process); }; });
}

void addDoctor(CLI::App& app, Action& action) {
    auto json = std::make_shared<bool>(false);
    CLI::App* doctor = app.add_subcommand("doctor", "Look whether all is well, changing nothing");
    doctor->add_flag("--json", *json, "Print JSON");
    doctor->callback([=, &action] { action = [=] { return examine(*json); }; });
}

int run(int count, char** arguments) {
    const ProcessInfo process = describeProcess(count, arguments);
    CLI::App app("Quillorn keeps track of clients, projects, tasks and time, and serves them to programs.", "quillorn");
    app.set_version_flag("--version", "quillorn " QUILLORN_VERSION);
    // Not "at least one": then a command that does not exist would be reported as none at all.
    app.require_subcommand(0, 1);
    app.get_formatter()->column_width(34);
    Action action;
    addServe(app, action, process);
    addSettings(app, action);
    addTimer(app, action, process);
    addBackups(app, action, process);
    addDoctor(app, action);

    // The switch for demo mode is no option of the usual form; the application looks at it by itself.
    std::vector<std::string> options = process.arguments;
    std::erase(options, demoArgument);
    std::reverse(options.begin(), options.end());
    try {
        app.parse(std::move(options));
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : static_cast<int>(ExitStatus::usage);
    }
    if (!action) {
        fmt::print(stderr, "A command is missing\nRun with --help for more information.\n");
        return static_cast<int>(ExitStatus::usage);
    }
    return static_cast<int>(action());
}

} // namespace
} // namespace quillorn

int main(int count, char** arguments) {
    try {
        quillorn::configureMemory();
        return quillorn::run(count, arguments);
    } catch (const std::exception& error) {
        fmt::print(stderr, "quillorn: {}\n", error.what());
        return static_cast<int>(quillorn::ExitStatus::failure);
    }
}
