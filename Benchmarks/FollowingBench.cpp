// What the main thread pays for following changes, with everything loaded that a store of the usual size has.

#include "Models/ProjectTask.h"
#include "Models/SchemaVersions.h"
#include "Models/TimeEntry.h"
#include "Platform/Crypto.h"
#include "Platform/NotificationCenter.h"
#include "Platform/RunLoop.h"
#include "Platform/SystemLog.h"
#include "Stopwatch.h"
#include "Store/Held.h"
#include "Store/ObservedQuery.h"

#include <algorithm>
#include <atomic>
#include <fmt/core.h>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace quillorn;

constexpr int rounds = 101;
constexpr int saves = 200;

struct Store {
    explicit Store(const char* file)
        : container(currentSchema(), &QuillornMigrationPlan(),
                    {.name = "Quillorn", .url = file, .cloudContainerIdentifier = {}},
                    {.random = random, .notifications = notifications}) {}

    SystemRandom random;
    NotificationCenter notifications;
    ModelContainer container;
};

class Bench {
  public:
    explicit Bench(const char* file) : m_ours(file), m_others(file) {}

    void run() {
        load();
        const double own = median([&] {
            m_tasks[5000]->setTitle(next());
            m_main.save();
            drain();
        });
        const double others = medianOf([&] { inBackground(m_others, 1); });
        ObservedQuery<ProjectTask> query(m_main, {.where = "priority >= 0"},
                                         [](const auto& a, const auto& b) { return a.priority() > b.priority(); });
        drain();
        const double queried = medianOf([&] { inBackground(m_others, 1); });
        m_told = 0;
        inBackground(m_ours, 20);
        const double twenty = cpu([&] { drain(); });
        const int refreshes = m_told;
        saveBesideWriters();
        fmt::print("{{\"tasks\":{},\"entries\":{},\"rows\":{},\"own\":{:.3f},\"others\":{:.3f},\"queried\":{:.3f},"
                   "\"twenty\":{:.3f},\"refreshes\":{},\"burst\":{:.3f},\"found\":{},\"save\":{:.2f},"
                   "\"writersSave\":{:.2f}}}\n",
                   m_tasks.size(), m_entries.size(), query.size(), own, others, queried, twenty, refreshes, burst(),
                   find(), m_save, m_writersSave);
    }

  private:
    void load() {
        for (ProjectTask* task : m_main.context().fetch<ProjectTask>()) {
            task->tags();
            task->project();
            task->timeEntries();
            m_tasks.emplace_back(*task);
        }
        for (TimeEntry* entry : m_main.context().fetch<TimeEntry>())
            m_entries.emplace_back(*entry);
        drain();
    }

    std::string next() { return fmt::format("Title {}", ++m_count); }

    /// Runs what was posted, and what that posts.
    void drain() {
        for (int turn = 0; turn < 2; ++turn) {
            m_queue.post([this] { m_queue.stop(); });
            m_queue.run();
        }
    }

    template <class Work>
    static double cpu(const Work& work) {
        Stopwatch stopwatch;
        work();
        return stopwatch.lap().cpu;
    }
    template <class Work>
    static double median(const Work& work) {
        Phase phase;
        for (int round = 0; round < rounds; ++round) {
            Stopwatch stopwatch;
            work();
            phase.add(stopwatch.lap());
        }
        return phase.cpu();
    }
    /// Of the turn after what somebody else does.
    template <class Work>
    double medianOf(const Work& work) {
        Phase phase;
        for (int round = 0; round < rounds; ++round) {
            work();
            Stopwatch stopwatch;
            drain();
            phase.add(stopwatch.lap());
        }
        return phase.cpu();
    }

    void change(Store& store, RowKey key) {
        ModelContext context(store.container, ModelContext::Intent::update);
        context.find<ProjectTask>(key)->setTitle(fmt::format("By another {}", ++m_count));
        context.save();
    }
    void inBackground(Store& store, int times) {
        std::thread([&] {
            for (int i = 0; i < times; ++i)
                change(store, m_keys + i);
        }).join();
        m_main.noticeFileChange();
    }

    /// Thirty saves by contexts of this process while the queue runs.
    double burst() {
        std::atomic<bool> isDone = false;
        std::thread writer([&] {
            for (int i = 0; i < 30; ++i)
                change(m_ours, m_keys + i);
            isDone = true;
            m_queue.post([this] { m_queue.stop(); });
        });
        const double time = cpu([&] {
            m_queue.run();
            drain();
        });
        writer.join();
        return time;
    }

    /// Statements for a thousand ids that are loaded.
    std::uint64_t find() {
        const auto before = m_ours.container.executedStatements();
        for (std::size_t i = 0; i < 1000; ++i)
            m_main.context().find<ProjectTask>(m_tasks[i]->id());
        const auto statements = m_ours.container.executedStatements() - before;
        drain();
        return statements;
    }

    static double p95(std::vector<double>& times) {
        std::ranges::sort(times);
        return times[times.size() * 95 / 100];
    }

    /// From a change to its being saved, beside four writers, in milliseconds on the wall; and what one of these waits.
    void saveBesideWriters() {
        std::atomic<bool> isDone = false;
        std::vector<double> times, writersTimes;
        std::vector<std::thread> writers;
        for (int i = 0; i < 4; ++i)
            writers.emplace_back([&, i] {
                while (!isDone) {
                    Stopwatch stopwatch;
                    change(m_ours, m_keys + i);
                    if (i == 0)
                        writersTimes.push_back(stopwatch.lap().wall);
                }
            });
        const Observation token = m_main.observe([this](const ChangeSet&) {
            if (!m_main.context().hasChanges())
                m_queue.stop();
        });
        for (int i = 0; i < saves; ++i) {
            m_tasks[7000]->setTitle(next());
            Stopwatch stopwatch;
            m_main.save();
            while (m_main.context().hasChanges())
                m_queue.run();
            times.push_back(stopwatch.lap().wall);
        }
        isDone = true;
        for (std::thread& writer : writers)
            writer.join();
        m_save = p95(times);
        m_writersSave = p95(writersTimes);
    }

    Store m_ours;
    Store m_others; // as another process has it
    StandardErrorLog m_log;
    RunLoop m_queue{m_log};
    MainContext m_main{m_ours.container, m_queue, m_log};
    std::vector<Held<ProjectTask>> m_tasks;
    std::vector<Held<TimeEntry>> m_entries;
    std::atomic<int> m_count = 0;
    RowKey m_keys = 100;
    int m_told = 0;
    double m_save = 0;
    double m_writersSave = 0;
    Observation m_token = m_main.observe([this](const ChangeSet&) { ++m_told; });
};

} // namespace

int main(int argc, char** argv) {
    if (argc != 2)
        return fmt::print(stderr, "usage: quillorn-following-bench STORE\n"), 2;
    try {
        Bench(argv[1]).run();
    } catch (const std::exception& error) {
        fmt::print(stderr, "{}\n", error.what());
        return 1;
    }
    return 0;
}
