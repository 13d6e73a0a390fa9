#include "CLI/TimeCommandLine.h"

#include "CLI/TimeCommands.h"

#include <CLI/CLI.hpp>

namespace quillorn {

namespace {

void addExport(CLI::App& app, Action& chosen) {
    auto file = std::make_shared<std::string>("-");
    CLI::App* command = app.add_subcommand("export", "Write everything in the store as JSON");
    command->footer("Settings and keys are no part of it. The file is for its owner alone, and replaced as a whole.");
    command->add_option("FILE", *file, "The file; without it, or with -, standard output")->type_name("");
    command->callback(
        [=, &chosen] { chosen = [=](const ProcessInfo& process) { return exportEverything(*file, process); }; });

    auto options = std::make_shared<ImportOptions>();
    CLI::App* import = app.add_subcommand("import", "Add everything in an export to the store");
    import->footer("All of it or nothing: an id that is there already, a reference that leads nowhere or a newer "
                   "version\nrefuses the whole.");
    import->add_option("FILE", options->file, "The export; - for standard input")->required()->type_name("");
    import->add_flag("--dry-run", options->isDryRun, "Say what would be imported, and change nothing");
    import->add_flag("--json", options->json, "Print JSON");
    import->callback(
        [=, &chosen] { chosen = [=](const ProcessInfo& process) { return importEverything(*options, process); }; });
}

} // namespace

void addTimeCommands(CLI::App& app, Action& chosen) {
    addExport(app, chosen);
}

} // namespace quillorn
