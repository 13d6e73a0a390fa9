#include "CLI/TaskCommandLine.h"

#include "CLI/Definitions.h"
#include "CLI/TaskCommands.h"

#include <CLI/CLI.hpp>

namespace quillorn {

namespace {

constexpr const char* taskWords = "Tasks: id, title, the beginning of an id or a part of a title; - reads them";
constexpr const char* whenWords = "2026-01-31, today, friday, \"in 2 weeks\", \"tomorrow 15:00\", 9pm";
constexpr const char* priorityWords = "low, medium, high or urgent";

void addAdd(CLI::App& app, Action& chosen) {
    auto options = std::make_shared<AddOptions>();
    CLI::App* command = app.add_subcommand("add", "Make a task of a sentence");
    command->footer(
        "Day, time, priority, #tag and @project are taken out of the sentence; names that there are not stay "
        "in the title.\nWhat options say counts more. For example:\n"
        "  quillorn add 'Call Bob tomorrow 15:00, high priority #phone @Acme'\n"
        "  quillorn add 'Send the invoice' --project Acme --due friday --tag money");
    addWords(command, "TEXT", options->words, "What is to be done");
    command->add_option("--project", options->project, "The project it belongs to")->type_name("PROJECT");
    command->add_option("--parent", options->parent, "The task it stands under")->type_name("TASK");
    command->add_option("--due", options->due, whenWords)->type_name("WHEN");
    command->add_option("--priority", options->priority, priorityWords)->type_name("WORD");
    addRepeated(command, "--tag", options->tags, "TAG", "A tag that there is; may be given again");
    command->add_option("--description", options->description, "What else there is to say")->type_name("TEXT");
    CLI::Option* plain =
        command->add_flag("--plain", options->isPlain, "Take the sentence for the title, as it stands");
    command->add_flag("--ai", options->asksModel, "Let the AI server read the sentence")->excludes(plain);
    addJson(command, options->json);
    runs(command, chosen, options, addTask);
}

void addList(CLI::App& app, Action& chosen) {
    auto options = std::make_shared<ListOptions>();
    CLI::App* command = app.add_subcommand("list", "Show tasks");
    command->footer("Into a pipe each task is a line of id, title, status, priority, due date, project and tags with "
                    "TAB between;\ngroups come first. Completed tasks are shown where showCompletedTasks says so. For "
                    "example:\n"
                    "  quillorn list today\n"
                    "  quillorn list --project Acme --group due\n"
                    "  quillorn list --tag waiting | quillorn done -");
    command->add_option("LIST", options->list, "today, upcoming (the next 7 days) or all")
        ->check(CLI::IsMember({"today", "upcoming", "all"}))
        ->type_name("");
    command->add_option("--client", options->client, "Of the projects of a client")->type_name("CLIENT");
    command->add_option("--project", options->project, "Of a project")->type_name("PROJECT");
    command->add_option("--tag", options->tag, "With a tag")->type_name("TAG");
    command->add_option("--meeting", options->meeting, "Made from a source with this in its title")->type_name("TEXT");
    command->add_option("--search", options->search, "With this in title, description, source or tags")
        ->type_name("TEXT");
    command->add_option("--sort", options->sort, "due, priority, title or created")
        ->check(CLI::IsMember({"due", "priority", "title", "created"}))
        ->type_name("ORDER");
    command->add_option("--group", options->group, "status, priority, project, due or tag")
        ->check(CLI::IsMember({"status", "priority", "project", "due", "tag"}))
        ->type_name("GROUPING");
    command->add_flag("--completed", options->showsCompleted, "Completed tasks as well");
    command->add_option("--limit", options->limit, "At most so many")->type_name("N");
    addJson(command, options->json);
    runs(command, chosen, options, listTasks);
}

void addShow(CLI::App& app, Action& chosen) {
    auto task = std::make_shared<std::string>();
    auto json = std::make_shared<bool>(false);
    CLI::App* command = app.add_subcommand("show", "Show all of a task");
    addWord(command, "TASK", *task, "A task: its id, the beginning of it, or its title");
    addJson(command, *json);
    command->callback(
        [=, &chosen] { chosen = [=](const ProcessInfo& process) { return showTask(*task, *json, process); }; });
}

void addEdit(CLI::App& app, Action& chosen) {
    auto options = std::make_shared<EditTaskOptions>();
    CLI::App* command = app.add_subcommand("edit", "Change fields of tasks");
    addWords(command, "TASK", options->tasks, taskWords);
    command->add_option("--title", options->title, "The new title")->type_name("TEXT");
    command->add_option("--description", options->description, "The new description")->type_name("TEXT");
    command->add_option("--due", options->due, std::string(whenWords) + "; none takes it away")->type_name("WHEN");
    command->add_option("--priority", options->priority, priorityWords)->type_name("WORD");
    command->add_option("--status", options->status, "todo, in-progress, review or done")->type_name("WORD");
    command->add_option("--source-title", options->sourceTitle, "A name for where it came from; empty removes it")
        ->type_name("TEXT");
    command->add_option("--source-url", options->sourceURL, "A link to that place; empty removes it")->type_name("URL");
    addJson(command, options->json);
    command->callback([=, &chosen] {
        requireOne(command,
                   {"--title", "--description", "--due", "--priority", "--status", "--source-title", "--source-url"});
        chosen = [=](const ProcessInfo& process) { return editTasks(*options, process); };
    });
}

/// Commands of tasks and nothing else.
void addSimple(CLI::App& app, Action& chosen) {
    const auto add = [&](const char* name, const char* words, const auto& run) {
        auto options = std::make_shared<TasksOptions>();
        CLI::App* command = app.add_subcommand(name, words);
        addWords(command, "TASK", options->tasks, taskWords);
        addJson(command, options->json);
        runs(command, chosen, options, run);
    };
    add("done", "Complete tasks; timers on them stop",
        [](const TasksOptions& options, const ProcessInfo& process) { return completeTasks(options, true, process); });
    add("reopen", "Open completed tasks again",
        [](const TasksOptions& options, const ProcessInfo& process) { return completeTasks(options, false, process); });
    add("duplicate", "Make copies of tasks to start over with", duplicateTasks);

    auto options = std::make_shared<TasksOptions>();
    auto isConfirmed = std::make_shared<bool>(false);
    CLI::App* command = app.add_subcommand("delete", "Delete tasks with their time entries and comments");
    addWords(command, "TASK", options->tasks, taskWords);
    addYes(command, *isConfirmed);
    addJson(command, options->json);
    command->callback([=, &chosen] {
        chosen = [=](const ProcessInfo& process) { return deleteTasks(*options, *isConfirmed, process); };
    });
}

void addMove(CLI::App& app, Action& chosen) {
    auto options = std::make_shared<MoveOptions>();
    CLI::App* command = app.add_subcommand("move", "Move tasks to a project, or under another task");
    command->footer(
        "The project stays where only the parent changes; subtasks, time and comments stay with their task.");
    addWords(command, "TASK", options->tasks, taskWords);
    CLI::Option* project = command->add_option("--project", options->project, "To this project")->type_name("PROJECT");
    command->add_flag("--no-project", options->leavesProject, "Out of its project")->excludes(project);
    CLI::Option* parent = command->add_option("--parent", options->parent, "Under this task")->type_name("TASK");
    command->add_flag("--no-parent", options->leavesParent, "To the top level")->excludes(parent);
    addJson(command, options->json);
    command->callback([=, &chosen] {
        requireOne(command, {"--project", "--no-project", "--parent", "--no-parent"});
        chosen = [=](const ProcessInfo& process) { return moveTasks(*options, process); };
    });
}

void addComment(CLI::App& app, Action& chosen) {
    struct Options {
        std::string task;
        std::vector<std::string> words;
        bool json = false;
    };
    auto options = std::make_shared<Options>();
    CLI::App* command = app.add_subcommand("comment", "Comment on a task");
    addWord(command, "TASK", options->task, "A task: its id, the beginning of it, or its title");
    addWords(command, "TEXT", options->words, "What to say");
    addJson(command, options->json);
    runs(command, chosen, options, [](const Options& given, const ProcessInfo& process) {
        return commentTask(given.task, given.words, given.json, process);
    });
}

void addRetag(CLI::App& app, Action& chosen) {
    auto options = std::make_shared<RetagOptions>();
    CLI::App* command = app.add_subcommand("retag", "Add tags to tasks and take tags away");
    command->footer("For example:\n  quillorn retag offer invoice --add money --remove waiting");
    addWords(command, "TASK", options->tasks, taskWords);
    addRepeated(command, "--add", options->added, "TAG", "A tag to add; may be given again");
    addRepeated(command, "--remove", options->removed, "TAG", "A tag to take away; may be given again");
    addJson(command, options->json);
    command->callback([=, &chosen] {
        requireOne(command, {"--add", "--remove"});
        chosen = [=](const ProcessInfo& process) { return retagTasks(*options, process); };
    });
}

} // namespace

void addTaskCommands(CLI::App& app, Action& chosen) {
    addAdd(app, chosen);
    addList(app, chosen);
    addShow(app, chosen);
    addEdit(app, chosen);
    addSimple(app, chosen);
    addMove(app, chosen);
    addComment(app, chosen);
    addRetag(app, chosen);
}

} // namespace quillorn
