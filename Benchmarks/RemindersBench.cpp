// What reading ten thousand to-dos costs, beside what it costs to read the files and split them into lines.

#include "Models/SchemaVersions.h"
#include "Platform/Background.h"
#include "Platform/Calendar.h"
#include "Platform/Clock.h"
#include "Platform/Crypto.h"
#include "Platform/HttpClient.h"
#include "Platform/NotificationCenter.h"
#include "Platform/RunTask.h"
#include "Platform/SettingsStore.h"
#include "Platform/SystemLog.h"
#include "Platform/TemporaryDirectory.h"
#include "Platform/VdirReminderStore.h"
#include "Reminders/ReminderImportService.h"
#include "Stopwatch.h"

#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <fmt/core.h>
#include <fstream>
#include <functional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;
using namespace quillorn;

namespace {

constexpr int lists = 20;
constexpr int toDos = 10'000;
constexpr int rounds = 15;

/// As synchronisers write them: some properties that nobody here reads, a zone of the file's own in every other one.
std::string toDo(int number) {
    const bool isZoned = number % 2 == 0;
    const std::string zone = isZoned ? "BEGIN:VTIMEZONE\r\nTZID:Europe/Berlin\r\nBEGIN:STANDARD\r\n"
                                       "DTSTART:19961027T030000\r\nRRULE:FREQ=YEARLY;BYDAY=-1SU;BYMONTH=10\r\n"
                                       "TZOFFSETFROM:+0200\r\nTZOFFSETTO:+0100\r\nEND:STANDARD\r\nEND:VTIMEZONE\r\n"
                                     : "";
    return fmt::format(
        "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Example//Tasks 1.0//EN\r\n{}BEGIN:VTODO\r\n"
        "UID:{:08x}-3c6f-4d4e-9d7e-0123456789ab\r\nDTSTAMP:20260110T081500Z\r\nCREATED:20260110T081500Z\r\n"
        "LAST-MODIFIED:20260110T081500Z\r\nSUMMARY:Write to number {} about the offer of last week\r\n"
        "DESCRIPTION:They asked for two variants\\, one with and one without the second p\r\n"
        " age. Prices as before\\nCall in the morning.\r\nDUE{}:20260{}15T100000\r\nPRIORITY:5\r\n"
        "STATUS:NEEDS-ACTION\r\nX-EXAMPLE-SORT-ORDER:{}\r\nSEQUENCE:2\r\nEND:VTODO\r\nEND:VCALENDAR\r\n",
        zone, number, number, isZoned ? ";TZID=Europe/Berlin" : "", 1 + number % 9, number);
}

void makeFolders(const fs::path& root) {
    for (int i = 0; i < toDos; ++i) {
        const fs::path folder = root / fmt::format("list-{:02}", i % lists);
        fs::create_directories(folder);
        std::ofstream(folder / fmt::format("{:08x}.ics", i)) << toDo(i);
    }
}

std::string contentOf(const fs::path& file) {
    const int opened = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status{};
    ::fstat(opened, &status);
    std::string content(static_cast<std::size_t>(status.st_size), '\0');
    const ssize_t length = ::read(opened, content.data(), content.size());
    ::close(opened);
    content.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
    return content;
}

/// The number of lines in all files below `root`, each line looked at by itself.
std::size_t splitAll(const fs::path& root) {
    std::size_t count = 0;
    std::vector<std::string_view> lines;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        if (!entry.is_regular_file())
            continue;
        const std::string content = contentOf(entry.path());
        lines.clear();
        for (std::string_view rest = content; !rest.empty();) {
            const std::size_t end = std::min(rest.find('\n'), rest.size() - 1);
            lines.push_back(rest.substr(0, end));
            rest.remove_prefix(end + 1);
        }
        count += lines.size();
    }
    return count;
}

void measure(Phase& phase, const std::function<std::size_t()>& work) {
    Stopwatch watch;
    if (work() == 0)
        fmt::print(stderr, "nothing was read\n");
    phase.add(watch.lap());
}

/// The processor time of all threads, in milliseconds.
double processTime() {
    return static_cast<double>(std::clock()) * 1e3 / CLOCKS_PER_SEC;
}

/// A pass of the import in which every reminder was decided against before.
double knownPass(const fs::path& folder, const Clock& clock, SystemLog& log) {
    RunLoop loop(log);
    FileSettings settings(folder / "settings.json", log);
    SystemRandom random;
    NotificationCenter notifications;
    const auto container = openContainer({.name = "Quillorn", .url = std::nullopt, .cloudContainerIdentifier = {}},
                                         {.random = random, .notifications = notifications}, log);
    const Calendar calendar("Europe/Berlin", "en_US");
    VdirReminderStore store([&] { return folder / "calendars"; }, [] { return "Europe/Berlin"; }, clock, log);
    Background background(loop);
    HttpClient client(loop);
    ReminderImportService service({clock, calendar, settings, loop, background, log, client, store},
                                  folder / "reminders.json", container.get(), false);
    Json::Array names;
    for (const std::string& name : runTask(loop, service.listNames()))
        names.emplace_back(name);
    settings.set("reminderImportLists", Json(names).text());
    service.demoDecide = [](const auto& items, const auto&) {
        std::vector<ReminderDecision> decisions;
        for (const ReminderItem& item : items)
            decisions.push_back({.reminderID = item.id}); // no work for any project
        return decisions;
    };
    runTask(loop, service.runImport());
    fmt::print("{}\n", service.lastResult().value_or(""));
    const double start = processTime();
    runTask(loop, service.runImport());
    fmt::print("{}\n", service.lastResult().value_or(""));
    return processTime() - start;
}

} // namespace

int main() {
    SystemRandom random;
    const TemporaryDirectory folder(random);
    makeFolders(folder / "calendars");
    StandardErrorLog log;
    const SystemClock clock;
    const auto makeStore = [&] {
        return VdirReminderStore([&] { return folder / "calendars"; }, [] { return "Europe/Berlin"; }, clock, log);
    };
    const auto read = [](VdirReminderStore& store) {
        const std::vector<ReminderList> all = store.lists();
        return store.openReminders(all).size();
    };

    VdirReminderStore known = makeStore();
    read(known);
    Phase lines;
    Phase first;
    Phase again;
    for (int i = 0; i < rounds; ++i) { // taking turns, so that other work of the machine meets all of them
        measure(lines, [&] { return splitAll(folder / "calendars"); });
        VdirReminderStore fresh = makeStore();
        measure(first, [&] { return read(fresh); });
        measure(again, [&] { return read(known); });
    }

    fmt::print("{} to-dos in {} lists, medians of {} rounds, milliseconds of processor time\n", toDos, lists, rounds);
    fmt::print("reading the files and splitting them into lines  {:7.1f}\n", lines.cpu());
    fmt::print("reading the to-dos                               {:7.1f}  {:.2f} x\n", first.cpu(),
               first.cpu() / lines.cpu());
    fmt::print("reading them again, unchanged                    {:7.1f}\n", again.cpu());
    fmt::print("a pass over them, all known and unchanged         {:7.1f}\n", knownPass(folder.path(), clock, log));
    return 0;
}
