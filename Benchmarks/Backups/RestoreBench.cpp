// Replaces the contents of a store by those of another one, as a restore does in the running program.

#include "Models/SchemaVersions.h"
#include "Platform/Crypto.h"
#include "Platform/NotificationCenter.h"
#include "Stopwatch.h"
#include "Store/ModelContainer.h"
#include "Store/ReplaceContents.h"

#include <fmt/core.h>
#include <sys/resource.h>

namespace {

using namespace quillorn;

/// The most memory that this process has had.
double peakMegabytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) * 1024 / 1e6;
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
