#include "CLI/CommandLine.h"
#include "Platform/Process.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <fmt/core.h>

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

int run(int count, char** arguments) {
    const ProcessInfo process = describeProcess(count, arguments);
    Action action;
    const std::shared_ptr<CLI::App> app = defineCommands(action);

    // The switch for demo mode is no option of the usual form; the application looks at it by itself.
    std::vector<std::string> options = process.arguments;
    std::erase(options, demoArgument);
    std::reverse(options.begin(), options.end());
    try {
        app->parse(std::move(options));
    } catch (const CLI::ParseError& error) {
        return app->exit(error) == 0 ? 0 : static_cast<int>(ExitStatus::usage);
    }
    if (!action) {
        fmt::print(stderr, "A command is missing\nRun with --help for more information.\n");
        return static_cast<int>(ExitStatus::usage);
    }
    return static_cast<int>(action(process));
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
