#include "CLI/AICommandLine.h"

#include "CLI/AICommands.h"

#include <CLI/CLI.hpp>

namespace quillorn {

namespace {

void addSubject(CLI::App& command, ChatSubjectOptions& options) {
    CLI::Option* project =
        command.add_option("--project", options.project, "A project: its id, the beginning of it, or its name")
            ->type_name("P");
    command.add_option("--client", options.client, "A client, in the same way")->type_name("C")->excludes(project);
}

/// One of the two is needed; a group of options would say so too, but is none for the man page and the completions.
void requireSubject(const ChatSubjectOptions& options) {
    if (!options.project && !options.client)
        throw CLI::RequiredError("--project or --client");
}

void addAI(CLI::App& app, Action& chosen) {
    auto json = std::make_shared<bool>(false);
    CLI::App* ai = app.add_subcommand("ai", "Look at the connection to the AI server");
    ai->footer("The server is chosen by the settings aiEndpoint, aiModel, aiApiKey and aiReasoningEffort.");
    ai->require_subcommand(0, 1);
    const auto add = [&](const char* name, const char* words, ExitStatus (*run)(bool)) {
        CLI::App* command = ai->add_subcommand(name, words);
        command->add_flag("--json", *json, "Print JSON");
        command->callback([=, &chosen] { chosen = [=](const ProcessInfo&) { return run(*json); }; });
    };
    add("status", "Show what is configured", &showAI);
    add("models", "List the models of the server", &listModels);
    add("test", "Try the connection", &testAI);
}

void addChat(CLI::App& app, Action& chosen) {
    auto options = std::make_shared<ChatOptions>();
    CLI::App* command = app.add_subcommand("chat", "Talk to the AI about a project or a client");
    command->footer("Without a message there is a conversation on the terminal, line by line: Ctrl-C stops an answer,\n"
                    "Ctrl-D ends. Without a terminal the message is read from standard input.");
    addSubject(*command, *options);
    command->add_option("MESSAGE", options->message, "What to say")->type_name("");
    CLI::Option* history = command->add_flag("--history", options->history, "Show the conversation so far");
    command->add_flag("--json", options->json, "Print the history as JSON")->needs(history);
    CLI::Option* clear = command->add_flag("--clear", options->clear, "Delete the conversation")->excludes(history);
    command->add_flag("--yes", options->confirmed, "Don't ask before deleting")->needs(clear);
    command->callback([=, &chosen] {
        requireSubject(*options);
        chosen = [=](const ProcessInfo& process) { return chat(*options, process); };
    });
}

void addSummary(CLI::App& app, Action& chosen) {
    auto options = std::make_shared<SummaryOptions>();
    CLI::App* command = app.add_subcommand("summary", "Let the AI report what was done in a period");
    command->footer("A DATE is of the form 2026-01-31 or one of \"today\", \"tomorrow\", \"in 3 days\", \"monday\" and "
                    "the like.\nThe report also stands in the conversation.");
    addSubject(*command, *options);
    command->add_option("--from", options->from, "The first day")->required()->type_name("DATE");
    command->add_option("--to", options->to, "The last day, which counts whole")->required()->type_name("DATE");
    command->add_flag("--html", options->html, "Print HTML for a mail program");
    command->callback([=, &chosen] {
        requireSubject(*options);
        chosen = [=](const ProcessInfo& process) { return summarise(*options, process); };
    });
}

void addParse(CLI::App& app, Action& chosen) {
    auto options = std::make_shared<ParseOptions>();
    CLI::App* command = app.add_subcommand("parse", "Show what a sentence is understood as, changing nothing");
    command->footer("For example:\n  quillorn parse 'Call Bob tomorrow 15:00, high priority #phone @Acme'");
    command->add_option("TEXT", options->words, "The sentence")->required()->type_name("");
    command->add_flag("--no-ai", options->withoutAI, "By fixed rules, also where an AI server is configured");
    command->add_flag("--json", options->json, "Print JSON");
    command->callback(
        [=, &chosen] { chosen = [=](const ProcessInfo& process) { return parseSentence(*options, process); }; });
}

} // namespace

void addAICommands(CLI::App& app, Action& chosen) {
    addAI(app, chosen);
    addChat(app, chosen);
    addSummary(app, chosen);
    addParse(app, chosen);
}

} // namespace quillorn
