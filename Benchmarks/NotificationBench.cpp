// What it costs to make the notifications of all tasks anew, in processor time of all threads.

#include "Models/ProjectTask.h"
#include "Models/SchemaVersions.h"
#include "Platform/Background.h"
#include "Platform/Calendar.h"
#include "Platform/Clock.h"
#include "Platform/Crypto.h"
#include "Platform/NotificationCenter.h"
#include "Platform/PendingNotifications.h"
#include "Platform/RunLoop.h"
#include "Platform/SettingsStore.h"
#include "Platform/SystemLog.h"
#include "Platform/TemporaryDirectory.h"
#include "Platform/WakeSignals.h"
#include "Services/NotificationService.h"
#include "Store/MainContext.h"

#include <algorithm>
#include <ctime>
#include <fmt/core.h>
#include <vector>

namespace {

using namespace quillorn;

constexpr int rounds = 51;

class NoWakeSignals final : public WakeSignals {
  public:
    Observation observe(std::function<void()>) override { return {}; }
};

/// A desktop at which nothing falls due.
class Desktop final : public LocalNotifications {
  public:
    Desktop(const Clock& clock, MainQueue& queue) : m_pending(clock, queue, m_wake, [](const auto&) {}) {}

    NotificationAuthorization authorization() const override { return NotificationAuthorization::authorized; }
    Observation observeAuthorization(std::function<void()>) override { return {}; }
    void requestAuthorization() override {}
    void add(NotificationRequest request) override {
        m_pending.add(std::move(request));
        if (++m_added == expected)
            onComplete();
    }
    std::vector<std::string> pending() override { return m_pending.identifiers(); }
    void removePending(const std::vector<std::string>& identifiers) override {
        m_added = 0;
        m_pending.remove(identifiers);
    }
    Observation observeActions(ActionHandler) override { return {}; }

    std::size_t expected = 0;
    std::function<void()> onComplete;

  private:
    NoWakeSignals m_wake;
    PendingNotifications m_pending;
    std::size_t m_added = 0;
};

/// In milliseconds, of the whole process.
double processorTime() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

class Bench {
  public:
    explicit Bench(const char* file)
        : m_container(currentSchema(), &QuillornMigrationPlan(),
                      {.name = "Quillorn", .url = file, .cloudContainerIdentifier = {}},
                      {.random = m_random, .notifications = m_center}) {}

    void run() {
        const std::size_t tasks = giveAllTheirDate();
        m_desktop.expected = tasks;
        m_desktop.onComplete = [this] { m_queue.stop(); };
        refresh();
        const auto statements = m_container.executedStatements();
        refresh();
        const auto perRefresh = m_container.executedStatements() - statements;
        std::vector<double> times;
        for (int round = 0; round < rounds; ++round) {
            const double begin = processorTime();
            refresh();
            times.push_back(processorTime() - begin);
        }
        std::ranges::nth_element(times, times.begin() + rounds / 2);
        fmt::print("{{\"tasks\":{},\"statements\":{},\"cpu\":{:.2f}}}\n", tasks, perRefresh, times[rounds / 2]);
    }

  private:
    /// Every task is open and due within the next year, every other one at a time of its own.
    std::size_t giveAllTheirDate() {
        ModelContext context(m_container, ModelContext::Intent::update);
        const std::vector<ProjectTask*> tasks = context.fetch<ProjectTask>();
        const Date now = m_clock.now();
        int number = 0;
        for (ProjectTask* task : tasks) {
            task->setCompleted(false, now);
            task->setDueDate(now + std::chrono::days(2) + std::chrono::minutes(++number * 50 % 500'000));
            task->setDueHasTime(number % 2 == 0);
        }
        context.save();
        return tasks.size();
    }

    void refresh() {
        m_service.refreshAll();
        m_queue.run();
    }

    SystemRandom m_random;
    NotificationCenter m_center;
    ModelContainer m_container;
    StandardErrorLog m_log;
    RunLoop m_queue{m_log};
    SystemClock m_clock;
    Calendar m_calendar{"Europe/Berlin", "en_US"};
    TemporaryDirectory m_folder{m_random};
    FileSettings m_settings{m_folder / "settings.json", m_log};
    MainContext m_main{m_container, m_queue, m_log};
    Desktop m_desktop{m_clock, m_queue};
    Background m_background{m_queue};
    NotificationService m_service{{m_desktop, m_clock, m_calendar, m_settings, m_queue, m_log}, m_main, m_background};
};

} // namespace

int main(int argc, char** argv) {
    if (argc != 2)
        return fmt::print(stderr, "usage: quillorn-notification-bench STORE\n"), 2;
    try {
        Bench(argv[1]).run();
    } catch (const std::exception& error) {
        fmt::print(stderr, "{}\n", error.what());
        return 1;
    }
    return 0;
}
