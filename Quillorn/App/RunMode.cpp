#include "App/RunMode.h"

#include <algorithm>
#include <string_view>

// NOLINTNEXTLINE(readability-redundant-declaration): POSIX leaves it to the program, only glibc has it in a header
extern char** environ;

namespace quillorn {

ProcessInfo ProcessInfo::of(int count, char** arguments) {
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

LaunchFlags LaunchFlags::of(const ProcessInfo& process) {
    const auto& [arguments, environment] = process;
    const auto demo = environment.find("QUILLORN_DEMO");
    return {
        .isTesting = environment.contains("XCTestConfigurationFilePath"),
        .isDemo = std::find(arguments.begin(), arguments.end(), demoArgument) != arguments.end() ||
                  (demo != environment.end() && demo->second == "1"),
    };
}

} // namespace quillorn
