#include "CLI/Invocation.h"

#include "CLI/CommandLine.h"
#include "CLI/Output.h"
#include "CLI/Suggestion.h"
#include "CLI/Table.h"
#include "CLI/TaskCommands.h"
#include "Platform/Terminal.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <fmt/core.h>
#include <sstream>

namespace quillorn {

namespace {

/// The command among those that were given that could not make sense of all its words.
const CLI::App* puzzled(const CLI::App* app) {
    if (app->remaining_size() > 0)
        return app;
    for (const CLI::App* below : app->get_subcommands())
        if (below->remaining_size(true) > 0)
            return puzzled(below);
    return app;
}

std::vector<std::string> optionsOf(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::Option* option : app.get_options({}))
        for (const std::string& name : option->get_lnames())
            names.push_back("--" + name);
    return names;
}

std::string wordsForExtras(const CLI::App& app) {
    const CLI::App& command = *puzzled(&app);
    const std::vector<std::string> remaining = command.remaining();
    const std::string word = remaining.empty() ? std::string() : remaining.front();
    if (word.starts_with('-'))
        return fmt::format("there is no option {}{}", word, suggestion(word, optionsOf(command)));
    if (!command.get_subcommands({}).empty())
        return noSuchCommand(command, word);
    return fmt::format("\"{}\" was not expected", word);
}

/// What the library has to say about a command line, help and version included.
ExitStatus report(const CLI::App& app, const CLI::ParseError& error) {
    std::ostringstream output;
    std::ostringstream errors;
    const bool isAnswered = app.exit(error, output, errors) == 0;
    fmt::print("{}", output.str());
    fmt::print(stderr, "{}", textFor(stderr, errors.str(), LineEnds::kept));
    return isAnswered ? ExitStatus::success : ExitStatus::usage;
}

} // namespace

ExitStatus invoke(const ProcessInfo& process) {
    Action action;
    const std::shared_ptr<CLI::App> app = defineCommands(action);

    // The switch for demo mode is no option of the usual form; the application looks at it by itself.
    std::vector<std::string> options = process.arguments;
    std::erase(options, demoArgument);
    std::reverse(options.begin(), options.end());
    try {
        app->parse(std::vector<std::string>(options));
    } catch (const CLI::ExtrasError&) {
        printError(wordsForExtras(*app) + "\nRun with --help for more information.");
        return ExitStatus::usage;
    } catch (const CLI::ParseError& error) {
        return report(*app, error);
    }
    if (!action && options.empty() && isForPeople())
        return showToday(process);
    if (!action) {
        fmt::print("{}", app->help());
        return ExitStatus::success;
    }
    return action(process);
}

} // namespace quillorn
