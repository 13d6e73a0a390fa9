// What screens cost over a store of the usual size: the first list, one changed task, a keystroke in search.

#include "Models/ProjectTask.h"
#include "Models/SchemaVersions.h"
#include "Platform/Calendar.h"
#include "Platform/Clock.h"
#include "Platform/Crypto.h"
#include "Platform/NotificationCenter.h"
#include "Platform/RunLoop.h"
#include "Platform/SettingsStore.h"
#include "Platform/SystemLog.h"
#include "Platform/TemporaryDirectory.h"
#include "Platform/WakeSignals.h"
#include "Services/DayChangeObserver.h"
#include "Services/TimerService.h"
#include "Stopwatch.h"
#include "Views/EditHistory.h"
#include "Views/SidebarView.h"
#include "Views/TaskListView.h"

#include <algorithm>
#include <fmt/core.h>
#include <memory>
#include <string>
#include <thread>

namespace {

using namespace quillorn;

constexpr int rounds = 101;
constexpr int builds = 21;
constexpr std::size_t rowsInSight = 40;
/// One that has a row of its own: every fifth stands under another one.
constexpr RowKey changedTask = 5001;

class NoWakeSignals final : public WakeSignals {
  public:
    Observation observe(std::function<void()> handler) override { return m_observers.add(std::move(handler)); }

  private:
    Observers<> m_observers;
};

/// A program with one window, but for the window.
struct Program {
    explicit Program(const char* file)
        : container(currentSchema(), &QuillornMigrationPlan(),
                    {.name = "Quillorn", .url = file, .cloudContainerIdentifier = {}},
                    {.random = random, .notifications = notifications}) {
        settings.set("showCompletedTasks", true);
    }

    SystemRandom random;
    NotificationCenter notifications;
    SystemClock clock;
    Calendar calendar{"UTC", "en_US"};
    Text text{"en_US"};
    StandardErrorLog log;
    RunLoop queue{log};
    TemporaryDirectory folder{random};
    FileSettings settings{folder.path() / "settings.json", log};
    NoWakeSignals wakeSignals;
    ModelContainer container;
};

/// The part of it that a window needs.
struct Window {
    explicit Window(Program& program)
        : main(program.container, program.queue, program.log),
          timer(program.queue, program.clock),
          history(main, timer, program.clock),
          days(program.clock, program.calendar, program.queue, program.wakeSignals),
          environment{main,          program.queue,    history,     timer, days, program.settings,
                      program.clock, program.calendar, program.text} {}

    MainContext main;
    TimerService timer;
    EditHistory history;
    DayChangeObserver days;
    MemorySceneStorage scene;
    ViewEnvironment environment;
};

class Bench {
  public:
    explicit Bench(const char* file) : m_program(file), m_others(file) {}

    void run() {
        const double built = build();
        Window window(m_program);
        TaskListView list(window.environment, window.scene, {TaskFilter::Kind::all});
        TaskListView today(window.environment, window.scene, {TaskFilter::Kind::today});
        TaskListView upcoming(window.environment, window.scene, {TaskFilter::Kind::upcoming});
        SidebarView sidebar(window.environment, window.scene, m_program.notifications);
        drain();
        const auto dashboards = [&] {
            for (const TaskListView* view : {&list, &today, &upcoming})
                (void)view->dashboard();
        };
        for (TaskListView* view : {&list, &today, &upcoming})
            look(*view);
        look(list, window.main.context().find<ProjectTask>(changedTask)->id());
        int told = 0;
        const Observation telling = list.rows().observe([&](const ListStep&, auto) { ++told; });
        const double titled = changed(window, told, dashboards, [](ProjectTask& task, int round) {
            task.setTitle(fmt::format("Changed {}", round));
        });
        const Date early{std::chrono::hours(24) * 20'000};
        const Date late = early + std::chrono::hours(24) * 700;
        const double moved = changed(window, told, dashboards, [&](ProjectTask& task, int) {
            task.setDueDate(task.dueDate() == early ? late : early);
        });
        const auto [median, worst] = keystrokes(list);
        fmt::print("{{\"rows\":{},\"build\":{:.3f},\"titled\":{:.3f},\"moved\":{:.3f},\"keystroke\":{:.3f},"
                   "\"worstKeystroke\":{:.3f}}}\n",
                   list.rows().size(), built, titled, moved, median, worst);
    }

  private:
    /// As a window does at the words of its first rows, and at that of one task.
    static void look(TaskListView& list, const UUID& task = UUID()) {
        for (std::size_t row = 0; row < list.rows().size(); ++row)
            if (row < rowsInSight || list.rows()[row].id.task == task)
                (void)list.rows()[row].words->title;
    }

    /// From an empty context to all rows, with the words of those in sight.
    double build() {
        Phase phase;
        for (int round = 0; round < builds; ++round) {
            Window window(m_program);
            drain();
            Stopwatch stopwatch;
            TaskListView list(window.environment, window.scene, {TaskFilter::Kind::all});
            look(list);
            phase.add(stopwatch.lap());
        }
        return phase.cpu();
    }

    /// Of the turn after another process has changed one task.
    template <class Show, class Change>
    double changed(Window& window, const int& told, const Show& show, const Change& change) {
        Phase phase;
        for (int round = 0; round < rounds; ++round) {
            std::thread([&] {
                ModelContext context(m_others.container, ModelContext::Intent::update);
                change(*context.find<ProjectTask>(changedTask), round);
                context.save();
            }).join();
            const int before = told;
            window.main.noticeFileChange();
            Stopwatch stopwatch;
            while (told == before)
                drain();
            show();
            phase.add(stopwatch.lap());
        }
        return phase.cpu();
    }

    /// A word typed letter by letter and taken back in the same way: the median, and the one that took longest.
    static std::pair<double, double> keystrokes(TaskListView& list) {
        Phase phase;
        double worst = 0;
        const std::string word = "review";
        for (int round = 0; round < 10; ++round)
            for (std::size_t step = 1; step <= 2 * word.size(); ++step) {
                const std::size_t length = step <= word.size() ? step : 2 * word.size() - step;
                Stopwatch stopwatch;
                list.setSearchText(word.substr(0, length));
                const Stopwatch::Lap lap = stopwatch.lap();
                phase.add(lap);
                worst = std::max(worst, lap.cpu);
            }
        return {phase.cpu(), worst};
    }

    void drain() {
        for (int turn = 0; turn < 2; ++turn) {
            m_program.queue.post([this] { m_program.queue.stop(); });
            m_program.queue.run();
        }
    }

    Program m_program;
    Program m_others; // as another process
};

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        fmt::print(stderr, "usage: quillorn-views-bench STORE\nPrints processor times in milliseconds as JSON.\n");
        return 2;
    }
    try {
        Bench(argv[1]).run();
    } catch (const std::exception& error) {
        fmt::print(stderr, "{}\n", error.what());
        return 1;
    }
    return 0;
}
