// The list of tasks as the program makes it, without HTTP and phase by phase: what a profiler is put on, and what the
// floor is compared with on a machine that is not quiet.

#include "Models/SchemaVersions.h"
#include "Models/TaskSearch.h"
#include "Platform/Clock.h"
#include "Platform/Crypto.h"
#include "Platform/NotificationCenter.h"
#include "Platform/Text.h"
#include "Records/TaskDTO.h"
#include "Stopwatch.h"
#include "Store/ModelContext.h"

#include <charconv>
#include <cstring>
#include <fmt/core.h>
#include <string_view>

namespace {

using namespace quillorn;

struct Phases {
    Phase fetch;
    Phase relations;
    Phase write;
    Phase release;
};

struct Environment {
    SystemRandom random;
    NotificationCenter notifications;
    SystemClock clock;
    Text text{"en_US"};
};

std::size_t runOnce(ModelContainer& container, const Environment& environment, Phases& phases) {
    std::size_t bytes = 0;
    Stopwatch stopwatch;
    {
        ModelContext context(container);
        auto tasks = findTasks(context, TaskSearch{}, environment.text);
        phases.fetch.add(stopwatch.lap());
        const TaskRows rows(context, std::move(tasks), environment.clock.now());
        phases.relations.add(stopwatch.lap());
        JsonWriter writer([&](std::string_view piece) { bytes += piece.size(); });
        writer.beginArray();
        TaskDTO record;
        for (std::size_t i = 0; i < rows.size(); ++i) {
            rows.fill(i, record);
            write(writer, record);
        }
        writer.endArray();
        writer.finish();
        phases.write.add(stopwatch.lap());
    }
    phases.release.add(stopwatch.lap());
    return bytes;
}

} // namespace

int main(int argc, char** argv) {
    int repeat = 11;
    const bool hasRepeat = argc == 4 && std::strcmp(argv[2], "--repeat") == 0;
    if (hasRepeat)
        std::from_chars(argv[3], argv[3] + std::strlen(argv[3]), repeat);
    if ((argc != 2 && !hasRepeat) || repeat < 1) {
        fmt::print(stderr, "usage: quillorn-list-bench STORE [--repeat N]\n"
                           "Prints the medians of N rounds in milliseconds as JSON.\n");
        return 2;
    }
    try {
        Environment environment;
        ModelContainer container(currentSchema(), &QuillornMigrationPlan(),
                                 {.name = "Quillorn", .url = argv[1], .cloudContainerIdentifier = {}},
                                 {.random = environment.random, .notifications = environment.notifications});
        Phases phases;
        std::size_t bytes = 0;
        for (int round = 0; round < repeat; ++round)
            bytes = runOnce(container, environment, phases);
        const auto sum = [&](double (Phase::*time)() const) {
            return (phases.fetch.*time)() + (phases.relations.*time)() + (phases.write.*time)() +
                   (phases.release.*time)();
        };
        fmt::print("{{\"bytes\":{},\"total\":{:.3f},\"cpu\":{:.3f},\"cpuFetch\":{:.3f},\"cpuRelations\":{:.3f},"
                   "\"cpuWrite\":{:.3f},\"cpuRelease\":{:.3f}}}\n",
                   bytes, sum(&Phase::wall), sum(&Phase::cpu), phases.fetch.cpu(), phases.relations.cpu(),
                   phases.write.cpu(), phases.release.cpu());
    } catch (const std::exception& error) {
        fmt::print(stderr, "{}\n", error.what());
        return 1;
    }
    return 0;
}
