#include "CLI/TimeCommandLine.h"

#include "CLI/Definitions.h"
#include "CLI/TimeCommands.h"
#include "Views/TimeReport.h"

#include <CLI/CLI.hpp>

namespace quillorn {

namespace {

constexpr const char* oneTaskWords = "A task: its id, the beginning of it, or its title";
constexpr const char* dayWords = "2026-01-31, today, yesterday, monday";

void addTimer(CLI::App& app, Action& chosen) {
    CLI::App* timer = app.add_subcommand("timer", "Track time on a task, also while the server runs");
    timer->require_subcommand(0, 1);
    const auto add = [&](const char* name, const char* words, const auto& run) {
        auto options = std::make_shared<TimerOptions>();
        CLI::App* command = timer->add_subcommand(name, words);
        addJson(command, options->json);
        runs(command, chosen, options, run);
        return std::pair(command, options);
    };
    const auto [start, started] = add("start", "Start on a task; a timer that runs is stopped first", startTimer);
    start->add_option("TASK", started->task, oneTaskWords)->required()->type_name("");
    const auto [stop, stopped] = add("stop", "Stop the running timer", stopTimer);
    stop->add_flag("--all", stopped->all, "Also what other programs have started");
    const auto [toggle, toggled] =
        add("toggle", "Stop on the task that the timer runs on, or start on it; without a task, stop", toggleTimer);
    toggle->add_option("TASK", toggled->task, oneTaskWords)->type_name("");
    const auto [status, shown] = add("status", "Show the running timer, and whatever else runs", showTimer);
    status->add_flag("--watch", shown->watches, "Go on showing it, each second")->excludes("--json");
    const auto [adjust, adjusted] = add("adjust", "Say when the running timer really began", adjustTimer);
    adjust->footer("For example:\n  quillorn timer adjust 9:05");
    addWord(adjust, "WHEN", adjusted->when, "9:05, 3pm, \"yesterday 23:50\", 2026-01-31T09:05");
}

void addLog(CLI::App& app, Action& chosen) {
    auto options = std::make_shared<LogOptions>();
    CLI::App* command = app.add_subcommand("log", "Log time that is over");
    command->footer(
        "A duration (45m, 1h30m, 1:30, 1.5h) ends now or, of another day, at this time of day; of two times "
        "of day the\nsecond is on the next day where it is before the first. For example:\n"
        "  quillorn log offer 45m\n"
        "  quillorn log --project Acme 9:00-10:30 --date yesterday --notes 'Call about the launch'");
    command->add_option("TASK", options->task, "The task; with --project there is none")->type_name("");
    command->add_option("TIME", options->time, "When: 45m, 1h30m, 1.5h, 9:00-10:30")->type_name("");
    command->add_option("--project", options->project, "Log on a project, without a task")->type_name("PROJECT");
    command->add_option("--date", options->date, dayWords)->type_name("DAY");
    command->add_option("--title", options->title, "A label in place of the task's title")->type_name("TEXT");
    command->add_option("--notes", options->notes, "What was done")->type_name("TEXT");
    addJson(command, options->json);
    command->callback([=, &chosen] {
        // With a project the only word is the time.
        if (options->project && options->time.empty())
            std::swap(options->task, options->time);
        else if (options->project)
            throw CLI::ExtrasError({options->time});
        if (options->time.empty())
            throw CLI::RequiredError(options->task.empty() && !options->project ? "TASK" : "TIME");
        chosen = [=](const ProcessInfo& process) { return logTime(*options, process); };
    });
}

void addTime(CLI::App& app, Action& chosen) {
    CLI::App* time = app.add_subcommand("time", "Show and change time entries");
    time->require_subcommand(0, 1);
    auto listed = std::make_shared<TimeListOptions>();
    CLI::App* list = time->add_subcommand("list", "Show time entries, the latest first");
    list->footer("Into a pipe each entry is a line of id, start, end, seconds, name, project and notes.");
    list->add_option("--from", listed->from, std::string("Begun on this day or later: ") + dayWords)->type_name("DAY");
    list->add_option("--to", listed->to, "Begun on this day or before")->type_name("DAY");
    list->add_option("--task", listed->task, "Of a task")->type_name("TASK");
    list->add_option("--project", listed->project, "Of a project")->type_name("PROJECT");
    list->add_option("--client", listed->client, "Of the projects of a client")->type_name("CLIENT");
    list->add_flag("--running", listed->running, "Those that run");
    list->add_option("--limit", listed->limit, "At most so many")->type_name("N");
    addJson(list, listed->json);
    runs(list, chosen, listed, listTime);

    constexpr const char* entryWords = "Entries: id, name, or the beginning of an id; - reads them";
    auto edited = std::make_shared<TimeEditOptions>();
    CLI::App* edit = time->add_subcommand("edit", "Change time entries");
    edit->footer("A time of day alone is one of the entry's own day.");
    addWords(edit, "ENTRY", edited->entries, entryWords);
    edit->add_option("--start", edited->start, "When it began: 9:05, \"yesterday 9:05\"")->type_name("WHEN");
    edit->add_option("--end", edited->end, "When it ended; one that runs stops")->type_name("WHEN");
    CLI::Option* task = edit->add_option("--task", edited->task, "On this task instead")->type_name("TASK");
    edit->add_option("--project", edited->project, "On this project, without a task")
        ->type_name("PROJECT")
        ->excludes(task);
    edit->add_option("--title", edited->title, "A label; empty removes it")->type_name("TEXT");
    edit->add_option("--notes", edited->notes, "What was done; empty removes it")->type_name("TEXT");
    addJson(edit, edited->json);
    edit->callback([=, &chosen] {
        requireOne(edit, {"--start", "--end", "--task", "--project", "--title", "--notes"});
        chosen = [=](const ProcessInfo& process) { return editTime(*edited, process); };
    });

    auto deleted = std::make_shared<TimeEditOptions>();
    CLI::App* remove = time->add_subcommand("delete", "Delete time entries");
    addWords(remove, "ENTRY", deleted->entries, entryWords);
    addYes(remove, deleted->isConfirmed);
    addJson(remove, deleted->json);
    runs(remove, chosen, deleted, deleteTime);
}

void addReport(CLI::App& app, Action& chosen) {
    auto options = std::make_shared<ReportOptions>();
    CLI::App* command = app.add_subcommand("report", "Add up tracked time");
    command->footer(
        "An entry counts whole on the day on which it began, a running one up to now; weeks begin on Monday,\n"
        "archived work counts. Into a pipe each row is a line of key, title, entries, seconds and hours.\n"
        "For example:\n"
        "  quillorn report --client Acme --by task --from 2026-11-01 --to 2026-11-30 --round 15\n"
        "  quillorn report --by week --csv > weeks.csv");
    command
        ->add_option("--from", options->from, std::string("The first day; the month's first unless given. ") + dayWords)
        ->type_name("DAY");
    command->add_option("--to", options->to, "The last day, which belongs to it; today unless given")->type_name("DAY");
    command->add_option("--client", options->client, "Of the projects of a client")->type_name("CLIENT");
    command->add_option("--project", options->project, "Of a project")->type_name("PROJECT");
    command->add_option("--by", options->by, "day, week, project, task, client or tag; project unless given")
        ->check(CLI::IsMember(timeReportGroupings))
        ->type_name("WHAT");
    command->add_option("--round", options->rounding, "Take each entry up to the next so many minutes")
        ->check(CLI::Range(1, 24 * 60))
        ->type_name("MINUTES");
    const auto addForm = [&](const char* name, ReportOptions::Form form, const char* words) {
        return command->add_flag_callback(name, [=] { options->form = form; }, words);
    };
    CLI::Option* csv = addForm("--csv", ReportOptions::Form::csv, "Print a table for spreadsheets");
    CLI::Option* json = addForm("--json", ReportOptions::Form::json, "Print JSON")->excludes(csv);
    addForm("--html", ReportOptions::Form::html, "Print a page for mails and browsers")->excludes(csv)->excludes(json);
    runs(command, chosen, options, reportTime);
}

} // namespace

void addTimeCommands(CLI::App& app, Action& chosen) {
    addTimer(app, chosen);
    addLog(app, chosen);
    addTime(app, chosen);
    addReport(app, chosen);
}

void addHistoryCommands(CLI::App& app, Action& chosen) {
    auto options = std::make_shared<ActivityOptions>();
    CLI::App* activity = app.add_subcommand("activity", "Show what has happened, the latest first");
    activity->footer("Into a pipe each line has id, kind, moment, title, place and the client's id.");
    activity->add_option("--client", options->client, "Of a client")->type_name("CLIENT");
    activity->add_option("--days", options->days, "Of today and the days before, so many in all")
        ->check(CLI::Range(1, 100'000))
        ->type_name("N");
    addJson(activity, options->json);
    runs(activity, chosen, options, showActivity);

    auto json = std::make_shared<bool>(false);
    CLI::App* day = app.add_subcommand("day", "Show what today has brought");
    day->footer("Into a pipe each line has what it is, id, moment, title and place or text.");
    addJson(day, *json);
    runs(day, chosen, json, showDay);

    struct Search {
        std::vector<std::string> words;
        bool json = false;
    };
    auto searched = std::make_shared<Search>();
    CLI::App* search =
        app.add_subcommand("search", "Search clients, projects, tasks, comments, notes and time entries");
    search->footer("Into a pipe each line has kind, id, title, and the line in which it was found.");
    addWords(search, "TEXT", searched->words, "What to look for, case ignored");
    addJson(search, searched->json);
    runs(search, chosen, searched, [](const Search& given, const ProcessInfo& process) {
        return searchEverything(given.words, given.json, process);
    });
}

void addExportCommands(CLI::App& app, Action& chosen) {
    auto file = std::make_shared<std::string>("-");
    CLI::App* command = app.add_subcommand("export", "Write everything in the store as JSON");
    command->footer("Settings and keys are no part of it. The file is for its owner alone, and replaced as a whole.");
    command->add_option("FILE", *file, "The file; without it, or with -, standard output")->type_name("");
    runs(command, chosen, file, exportEverything);

    auto options = std::make_shared<ImportOptions>();
    CLI::App* import = app.add_subcommand("import", "Add everything in an export to the store");
    import->footer("All of it or nothing: an id that is there already, a reference that leads nowhere or a newer "
                   "version\nrefuses the whole.");
    addWord(import, "FILE", options->file, "The export; - for standard input");
    import->add_flag("--dry-run", options->isDryRun, "Say what would be imported, and change nothing");
    addJson(import, options->json);
    runs(import, chosen, options, importEverything);
}

} // namespace quillorn
