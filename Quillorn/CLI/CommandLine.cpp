#include "CLI/CommandLine.h"

#include "CLI/AICommandLine.h"
#include "CLI/AgentCommands.h"
#include "CLI/CompletionCommand.h"
#include "CLI/Output.h"
#include "CLI/RecordCommandLine.h"
#include "CLI/ReminderCommandLine.h"
#include "CLI/Suggestion.h"
#include "CLI/TaskCommandLine.h"
#include "CLI/TimeCommandLine.h"

#include <CLI/CLI.hpp>
#include <fmt/core.h>

namespace quillorn {
namespace {

constexpr const char* versionText = "quillorn " QUILLORN_VERSION;

void addServe(CLI::App& app, Action& chosen) {
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
    CLI::Option* key = command->add_option("--key", options->key, "The API key; --key-file keeps it out of the history")
                           ->type_name("KEY");
    command
        ->add_option("--key-file", options->keyFile,
                     "A file with the API key, - for standard input; QUILLORN_API_KEY in the environment does the same")
        ->excludes(key)
        ->type_name("FILE");
    command->callback([=, &chosen] { chosen = [=](const ProcessInfo& process) { return serve(*options, process); }; });
}

void addSettings(CLI::App& app, Action& chosen) {
    auto options = std::make_shared<SettingsOptions>();
    auto key = std::make_shared<std::string>();
    auto value = std::make_shared<std::string>();
    CLI::App* settings = app.add_subcommand("settings", "Read and change the settings");
    settings->require_subcommand(0, 1);

    CLI::App* list = settings->add_subcommand("list", "Show every setting and its value");
    list->add_flag("--all", options->all, "Also what services and windows keep for themselves");
    list->add_flag("--show-keys", options->showKeys, "Also the keys, which are hidden otherwise");
    list->add_flag("--json", options->json, "Print JSON");
    list->callback([=, &chosen] { chosen = [=](const ProcessInfo&) { return listSettings(*options); }; });

    CLI::App* get = settings->add_subcommand("get", "Print the value of one setting");
    get->add_option("KEY", *key, "Name of the setting")->required();
    get->add_flag("--json", options->json, "Print JSON");
    get->callback([=, &chosen] { chosen = [=](const ProcessInfo&) { return getSetting(*key, *options); }; });

    CLI::App* set = settings->add_subcommand("set", "Change one setting");
    set->add_option("KEY", *key, "Name of the setting")->required();
    auto isRead = std::make_shared<bool>(false);
    auto isMade = std::make_shared<bool>(false);
    CLI::Option* typed = set->add_option("VALUE", *value, "The new value");
    CLI::Option* read = set->add_flag("--stdin", *isRead, "Read the value from standard input");
    read->excludes(typed);
    set->add_flag("--generate", *isMade, "Make a new key, for apiAuthKey")->excludes(typed)->excludes(read);
    // A value may begin with a dash, as no option of this command does.
    set->allow_extras();
    set->callback([=, &chosen] {
        std::vector<std::string> rest = set->remaining();
        std::erase(rest, "--"); // behind which the library takes everything for a value
        if (typed->count() == 0 && rest.size() == 1 && !rest[0].starts_with("--"))
            return void(chosen = [=](const ProcessInfo&) { return setSetting(*key, rest[0]); });
        if (!rest.empty())
            throw CLI::ExtrasError(rest);
        if (typed->count() == 0 && !*isRead && !*isMade)
            throw CLI::RequiredError("VALUE");
        chosen = [=](const ProcessInfo&) {
            return *isMade ? generateSetting(*key) : *isRead ? readSetting(*key) : setSetting(*key, *value);
        };
    });

    CLI::App* reset = settings->add_subcommand("reset", "Go back to the default of one setting");
    reset->add_option("KEY", *key, "Name of the setting")->required();
    reset->callback([=, &chosen] { chosen = [=](const ProcessInfo&) { return resetSetting(*key); }; });
}

void addBackups(CLI::App& app, Action& chosen) {
    auto json = std::make_shared<bool>(false);
    auto quick = std::make_shared<bool>(false);
    auto confirmed = std::make_shared<bool>(false);
    auto file = std::make_shared<std::string>();

    CLI::App* backup = app.add_subcommand("backup", "Take a backup now, also while the server runs");
    backup->add_flag("--json", *json, "Print JSON");
    backup->callback([=, &chosen] { chosen = [=](const ProcessInfo& process) { return backUp(*json, process); }; });

    CLI::App* list = app.add_subcommand("backups", "Show the backups, and whether they are sound");
    list->add_flag("--no-check", *quick, "Don't look into the files, which takes a while for large stores");
    list->add_flag("--json", *json, "Print JSON");
    list->callback([=, &chosen] { chosen = [=](const ProcessInfo&) { return listBackups(*json, !*quick); }; });

    CLI::App* restored = app.add_subcommand("restore", "Replace all data by that of a backup");
    restored->footer("The present data goes to the folder of the backups first, so a restore can be undone.");
    restored->add_option("FILE", *file, "The backup")->required();
    restored->add_flag("--yes", *confirmed, "Don't ask");
    restored->callback(
        [=, &chosen] { chosen = [=](const ProcessInfo& process) { return restore(*file, *confirmed, process); }; });
}

void addDoctor(CLI::App& app, Action& chosen) {
    auto json = std::make_shared<bool>(false);
    CLI::App* doctor = app.add_subcommand("doctor", "Look whether all is well, changing nothing");
    doctor->add_flag("--json", *json, "Print JSON");
    doctor->callback([=, &chosen] { chosen = [=](const ProcessInfo&) { return examine(*json); }; });
}

void addSync(CLI::App& app, Action& chosen) {
    auto json = std::make_shared<bool>(false);
    CLI::App* sync = app.add_subcommand("sync", "Show whether changes by others have come in");
    sync->footer("Asks the server or the desktop that runs; without one there is only the network to tell of.");
    sync->add_flag("--json", *json, "Print JSON");
    sync->callback([=, &chosen] { chosen = [=](const ProcessInfo&) { return showSync(*json); }; });
}

ExitStatus showHelp(const CLI::App& program, const std::vector<std::string>& words) {
    const CLI::App* command = &program;
    std::string title = program.get_name();
    for (const std::string& word : words) {
        const auto below = command->get_subcommands([&](const CLI::App* each) { return each->get_name() == word; });
        if (below.empty()) {
            printError(noSuchCommand(*command, word));
            return ExitStatus::usage;
        }
        command = below.front();
        title += " " + word;
    }
    fmt::print("{}", command->get_formatter()->make_help(command, title, CLI::AppFormatMode::Normal));
    return ExitStatus::success;
}

void addHelp(CLI::App& app, Action& chosen) {
    auto words = std::make_shared<std::vector<std::string>>();
    CLI::App* help = app.add_subcommand("help", "Show what a command does, as its --help does");
    help->add_option("COMMAND", *words, "The command, for example \"settings set\"");
    help->callback([=, &app, &chosen] { chosen = [=, &app](const ProcessInfo&) { return showHelp(app, *words); }; });

    CLI::App* version = app.add_subcommand("version", "Show the version, as --version does");
    version->callback([&] {
        chosen = [](const ProcessInfo&) {
            fmt::print("{}\n", versionText);
            return ExitStatus::success;
        };
    });
}

/// Commands that stand under one title in a list of all.
struct CommandGroup {
    const char* title;
    std::vector<void (*)(CLI::App&, Action&)> definitions;
};

void addCommands(CLI::App& app, Action& chosen, const CommandGroup& group) {
    const std::string undecided = app.get_group();
    for (const auto define : group.definitions)
        define(app, chosen);
    for (CLI::App* command : app.get_subcommands([&](const CLI::App* each) { return each->get_group() == undecided; }))
        command->group(group.title);
}

} // namespace

std::string noSuchCommand(const CLI::App& app, const std::string& word) {
    std::vector<std::string> names;
    for (const CLI::App* below : app.get_subcommands({}))
        if (!below->get_group().empty()) // else it is for programs
            names.push_back(below->get_name());
    return fmt::format("there is no command \"{}\"{}", word, suggestion(word, names));
}

std::shared_ptr<CLI::App> defineCommands(Action& chosen) {
    auto app = std::make_shared<CLI::App>(
        "Quillorn keeps track of clients, projects, tasks and time, and serves them to programs.", "quillorn");
    app->set_version_flag("--version", versionText);
    // Not "at least one": then a command that does not exist would be reported as none at all.
    app->require_subcommand(0, 1);
    app->get_formatter()->column_width(34);
    // In this order help and pages list them.
    const CommandGroup groups[] = {
        {"Tasks", {addTaskCommands}},
        {"Clients, projects, notes and tags",
         {addClientCommands, addProjectCommands, addGroupCommands, addNoteCommands, addTagCommands}},
        {"Time", {addTimeCommands}},
        {"What was done, and search", {addHistoryCommands}},
        {"AI assistant and coding agents", {addAICommands, addAgentCommands}},
        {"Reminders", {addReminderCommands}},
        {"All data: files and backups", {addExportCommands, addBackups}},
        {"Server, settings and health", {addServe, addSettings, addSync, addDoctor}},
        {"About the program", {addHelp}},
    };
    for (const CommandGroup& group : groups)
        addCommands(*app, chosen, group);
    addCompletionCommand(*app, chosen);
    return app;
}

} // namespace quillorn
