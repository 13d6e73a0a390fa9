#include "Desktop/DesktopOptions.h"

#include "App/RunMode.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <map>

namespace quillorn {

std::optional<int> DesktopOptions::read(std::vector<std::string> arguments, DesktopOptions& options) {
    CLI::App app("Quillorn, the personal work tracker, in a window of its own", "quillorn-desktop");
    app.set_version_flag("--version", "quillorn-desktop " QUILLORN_VERSION);
    app.add_option("ADDRESS", options.address, "What to show: quillorn://task/ID, also client, project, note, tag")
        ->check([](const std::string& text) {
            return text.starts_with("quillorn://") ? std::string() : "is not an address that begins with quillorn://";
        });
    app.add_flag("--quick-add", options.quickAdd, "Add a task in a small window of its own");
    const std::map<std::string, Appearance::Scheme> schemes{{"system", Appearance::Scheme::system},
                                                            {"light", Appearance::Scheme::light},
                                                            {"dark", Appearance::Scheme::dark}};
    app.add_option("--theme", options.scheme, "Colours: those of the system, light or dark")
        ->transform(CLI::CheckedTransformer(schemes))
        ->type_name("system|light|dark");
    app.add_flag("--sample", options.isSample,
                 "Show the work of a freelancer who never was, in a store that is gone at the end");
    app.footer("An empty store in memory is shown when -QUILLORN_DEMO is given.");
    std::erase(arguments, demoArgument);
    std::ranges::reverse(arguments); // as the library wants them
    try {
        app.parse(std::move(arguments));
    } catch (const CLI::ParseError& error) {
        return app.exit(error, std::cout, std::cerr) == 0 ? 0 : 2;
    }
    return std::nullopt;
}

} // namespace quillorn
