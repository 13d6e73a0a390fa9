#include "CLI/ReminderCommandLine.h"

#include "CLI/ReminderCommands.h"

#include <CLI/CLI.hpp>

namespace quillorn {

namespace {

/// An option that says yes and one that says no; with neither of them nothing is said.
void addChoice(CLI::App& command, std::optional<bool>& choice, const char* yes, const char* yesWords, const char* no,
               const char* noWords) {
    CLI::Option* first = command.add_flag_callback(yes, [&choice] { choice = true; }, yesWords);
    command.add_flag_callback(no, [&choice] { choice = false; }, noWords)->excludes(first);
}

void addRemindOptions(CLI::App& command, RemindOptions& options) {
    command.add_option("--list", options.list, "Name of a project, or Inbox for none")->type_name("NAME");
    command.add_option("--note", options.note, "What else there is to say")->type_name("TEXT");
    command.add_option("--due", options.due, "2026-01-31, 2026-01-31T09:05, friday, \"tomorrow 09:05\" or 9pm")
        ->type_name("WHEN");
    command.add_option("--tag", options.tags, "Name of a tag that there is; may be given again")
        ->type_name("NAME")
        ->expected(1)
        ->take_all();
    command.add_option("--url", options.urls, "An address for the note; may be given again")
        ->type_name("URL")
        ->expected(1)
        ->take_all();
    command.add_flag("--json", options.json, "Print JSON");
}

void addRemind(CLI::App& app, Action& chosen) {
    auto created = std::make_shared<RemindOptions>();
    CLI::App* remind = app.add_subcommand("remind", "Make a task as one would ask an assistant to");
    remind->footer("Without --list the setting voiceRoutingEndpoint decides: a language model on this machine may\n"
                   "find the project, else the task goes to the Inbox.");
    remind->add_option("TITLE", created->words, "What is to be done")->required();
    addRemindOptions(*remind, *created);
    remind->add_flag_callback("--flag", [options = created.get()] { options->isFlagged = true; }, "High priority");
    remind->callback(
        [=, &chosen] { chosen = [=](const ProcessInfo& process) { return quillorn::remind(*created, process); }; });

    auto changed = std::make_shared<RemindOptions>();
    CLI::App* update = app.add_subcommand("remind-update", "Change a task as one would ask an assistant to");
    update->add_option("TASK-ID", changed->task, "Id of the task")->required();
    update->add_option("--title", changed->title, "The new title")->type_name("TITLE");
    addRemindOptions(*update, *changed);
    addChoice(*update, changed->isFlagged, "--flag", "High priority", "--no-flag", "The usual priority again");
    addChoice(*update, changed->isDone, "--done", "Complete the task", "--not-done", "Open the task again");
    update->callback(
        [=, &chosen] { chosen = [=](const ProcessInfo& process) { return updateReminder(*changed, process); }; });
}

void addReminders(CLI::App& app, Action& chosen) {
    auto json = std::make_shared<bool>(false);
    auto names = std::make_shared<std::vector<std::string>>();
    auto file = std::make_shared<std::string>();
    CLI::App* reminders = app.add_subcommand("reminders", "Make tasks of the to-dos of other programs");
    reminders->require_subcommand(0, 1);
    using ListCommand = std::function<ExitStatus(bool json, const ProcessInfo& process)>;
    const auto add = [&](const char* name, const char* words, const ListCommand& action) {
        CLI::App* command = reminders->add_subcommand(name, words);
        command->add_flag("--json", *json, "Print JSON");
        command->callback(
            [=, &chosen] { chosen = [=](const ProcessInfo& process) { return action(*json, process); }; });
        return command;
    };
    add("lists", "Show the lists of to-dos, how much is open, and which are chosen", listReminderLists);
    CLI::App* choose = reminders->add_subcommand("choose", "Choose the lists to import from; without a name none");
    choose->add_option("NAME", *names, "Name of a list");
    choose->callback(
        [=, &chosen] { chosen = [=](const ProcessInfo& process) { return chooseReminderLists(*names, process); }; });
    add("status", "Show what is chosen, and what the last import did", showReminderImport);
    add("run", "Import now: what the AI is sure of becomes a task", runReminderImport);
    add("recheck", "Let the AI look again at what was decided against", recheckReminders);
    CLI::App* review = add("review", "Decide on each open reminder", [=](bool isJson, const ProcessInfo& process) {
        return reviewReminders(*names, isJson, process);
    });
    review->add_option("--lists", *names, "Other lists than the chosen ones")->type_name("NAME");
    CLI::App* rows =
        add("import", "Import what a review has printed, as it was edited",
            [=](bool isJson, const ProcessInfo& process) { return importReminderRows(*file, isJson, process); });
    rows->add_option("ROWS", *file, "The file; - for standard input")->required();
}

} // namespace

void addReminderCommands(CLI::App& app, Action& chosen) {
    addRemind(app, chosen);
    addReminders(app, chosen);
}

} // namespace quillorn
