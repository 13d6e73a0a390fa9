// Replaces the contents of a store by those of another one, as a restore does in the running program.

#include "Models/SchemaVersions.h"
#include "Platform/Crypto.h"
#include "Platform/NotificationCenter.h"
#include "Stopwatch.h"
#include "Store/ModelContainer.h"
#include "Store/ReplaceContents.h"

#include <fmt/core.h>
#include <fstream>
#include <string>

namespace {

using namespace quillorn;

/// The most memory that this program has had.
double peakMegabytes() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmHWM:"))
            return std::stod(line.substr(6)) * 1024 / 1e6;
    return 0;
}

void run(const char* from, const char* to) {
    SystemRandom random;
    NotificationCenter notifications;
    const auto open = [&](const char* file) {
        return std::make_unique<ModelContainer>(
            currentSchema(), &QuillornMigrationPlan(),
            ModelConfiguration{.name = "Quillorn", .url = file, .cloudContainerIdentifier = {}},
            StoreEnvironment{.random = random, .notifications = notifications});
    };
    const auto source = open(from), live = open(to);
    const double before = peakMegabytes();
    Stopwatch stopwatch;
    replaceStoreContents(*source, *live);
    const auto lap = stopwatch.lap();
    fmt::print("{{\"milliseconds\":{:.1f},\"cpu\":{:.1f},\"megabytes\":{:.1f}}}\n", lap.wall, lap.cpu,
               peakMegabytes() - before);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3)
        return fmt::print(stderr, "usage: quillorn-restore-bench STORE LIVE_STORE\n"), 2;
    try {
        run(argv[1], argv[2]);
    } catch (const std::exception& error) {
        fmt::print(stderr, "{}\n", error.what());
        return 1;
    }
    return 0;
}
