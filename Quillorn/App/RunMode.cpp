#include "App/RunMode.h"

#include <algorithm>

namespace quillorn {

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
