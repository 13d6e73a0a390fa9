// What the window costs on the user's store, in processor time of its main thread: the first frame, typing, scrolling,
// what others change, going from screen to screen, and doing nothing.

#include "Desktop/Shell.h"
#include "Models/ProjectTask.h"
#include "Platform/SystemLog.h"
#include "Stopwatch.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTimer>
#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fmt/core.h>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace quillorn {
namespace {

constexpr int patience = 10'000;    // milliseconds until a frame that doesn't come is given up
constexpr int firstBackup = 60'000; // … until a backup is made, and done

double processMilliseconds() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// The number behind a name in one of the process's status files.
double statusNumber(const std::filesystem::path& file, std::string_view name) {
    std::ifstream lines(file);
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with(name))
            return std::stod(line.substr(name.size() + 1));
    return 0;
}

/// How often each thread of this process has waited so far.
std::map<std::string, double> waits() {
    std::map<std::string, double> counts;
    for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task"))
        counts[thread.path().filename()] = statusNumber(thread.path() / "status", "voluntary_ctxt_switches");
    return counts;
}

/// How often those that are there have waited since.
double waitsSince(std::map<std::string, double>& before) {
    double sum = 0;
    for (const auto& [thread, count] : waits())
        sum += count - before[thread];
    return sum;
}

double share(std::vector<double> values, double part) {
    std::ranges::sort(values);
    return values.at(static_cast<std::size_t>(static_cast<double>(values.size() - 1) * part));
}

class DesktopBench {
  public:
    explicit DesktopBench(Shell& shell) : m_shell(shell), m_window(shell.window()) {
        QObject::connect(&m_window, &QQuickWindow::frameSwapped, &m_window, [this] {
            if (m_frames++ == 0)
                m_first = processMilliseconds();
        });
    }

    /// What the process had taken when its window was first drawn.
    double firstFrame() {
        waitForFrame(0);
        return m_first;
    }

    void run(int idleSeconds) {
        waitForFrame(0);
        settle();
        const double resident = statusNumber("/proc/self/status", "VmRSS") * 1024 / 1e6;
        desk().command("showAllTasks");
        settle();
        const std::vector<double> keys = keystrokes();
        const std::vector<double> frames = scrolling();
        const std::vector<double> changes = changesOutside();
        const auto [firstVisit, worst, words] = switching();
        rest(firstBackup);
        const int framesBefore = m_frames;
        std::map<std::string, double> waitsBefore = waits();
        rest(idleSeconds * 1000);
        const double wakeUps = waitsSince(waitsBefore) - 1; // one wait is our own
        fmt::print("{{\"resident\":{:.1f},\"keystroke\":{:.2f},\"worstKeystroke\":{:.2f},"
                   "\"scroll\":{:.2f},\"changed\":{:.2f},\"firstVisit\":{:.1f},\"switch\":{:.1f},\"switchWords\":\"{}"
                   "\",\"idleFrames\":{},"
                   "\"wakeUps\":{:.1f}}}\n",
                   resident, share(keys, 0.5), share(keys, 1), share(frames, 0.95), share(changes, 0.5), firstVisit,
                   worst, words, m_frames - framesBefore, wakeUps * 60 / idleSeconds);
    }

  private:
    DesktopApp& desk() { return *m_shell.desk(); }
    TaskListScreen& tasks() { return *qobject_cast<TaskListScreen*>(desk().tasks()); }

    /// Asleep, as a program is between events: asking again and again would be measured.
    void waitForFrame(int before) {
        QEventLoop loop;
        QObject::connect(&m_window, &QQuickWindow::frameSwapped, &loop, &QEventLoop::quit);
        QTimer::singleShot(patience, &loop, [&] { loop.exit(1); });
        if (m_frames == before && loop.exec() != 0)
            throw std::runtime_error("no frame was drawn");
        QCoreApplication::processEvents(); // what belongs to it but comes later
    }

    static void rest(int milliseconds) {
        QEventLoop loop;
        QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
        loop.exec();
    }

    /// Until nothing has been drawn for a while.
    void settle(int milliseconds = 300) {
        for (int before = -1, round = 0; before != m_frames && round < 20; ++round) {
            before = m_frames;
            rest(milliseconds);
        }
    }

    /// Processor time from here to the frame that shows it.
    template <class Act>
    double untilDrawn(const Act& act) {
        const int before = m_frames;
        Stopwatch stopwatch;
        act();
        waitForFrame(before);
        return stopwatch.lap().cpu;
    }

    template <class IsWanted>
    QQuickItem* find(QQuickItem& root, const IsWanted& isWanted) {
        if (!root.isVisible() || isWanted(root))
            return root.isVisible() ? &root : nullptr;
        for (QQuickItem* child : root.childItems())
            if (QQuickItem* found = find(*child, isWanted))
                return found;
        return nullptr;
    }

    /// A word typed into the field and taken back, letter by letter.
    std::vector<double> keystrokes() {
        QQuickItem* field = find(*m_window.contentItem(), [&](const QQuickItem& item) {
            return item.property("placeholderText").toString() == TaskListScreen::searchPrompt();
        });
        if (field == nullptr)
            throw std::runtime_error("there is no field to search in");
        m_window.requestActivate();
        field->forceActiveFocus();
        settle();
        std::vector<double> times;
        for (int round = 0; round < 5; ++round)
            for (const char letter : std::string("review\b\b\b\b\b\b")) {
                const bool isBack = letter == '\b';
                const int key = isBack ? Qt::Key_Backspace : Qt::Key_A + (letter - 'a');
                QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, isBack ? QString() : QString(QChar(letter)));
                const QString before = tasks().searchText();
                times.push_back(untilDrawn([&] { QCoreApplication::sendEvent(field, &press); }));
                if (tasks().searchText() == before)
                    throw std::runtime_error("what was typed did not reach the search");
            }
        settle();
        return times;
    }

    std::vector<double> scrolling() {
        QQuickItem* list = find(*m_window.contentItem(), [&](const QQuickItem& item) {
            return item.property("model").value<QObject*>() == tasks().rows();
        });
        if (list == nullptr)
            throw std::runtime_error("there is no list to scroll");
        std::vector<double> times;
        for (int frame = 0; frame < 200; ++frame)
            times.push_back(
                untilDrawn([&] { list->setProperty("contentY", list->property("contentY").toDouble() + 60); }));
        list->setProperty("contentY", 0);
        settle();
        return times;
    }

    /// The first task of the list gets another title, by another thread.
    std::vector<double> changesOutside() {
        QAbstractItemModel& rows = *tasks().rows();
        const QHash<int, QByteArray> names = rows.roleNames();
        int row = 0;
        while (rows.index(row, 0).data(names.key("kind")).toInt() != static_cast<int>(TaskListRow::Kind::task))
            ++row;
        const UUID id = UUID::parse(rows.index(row, 0).data(names.key("taskId")).toString().toStdString()).value();
        std::vector<double> times;
        for (int round = 0; round < 31; ++round)
            times.push_back(untilDrawn([&] {
                std::thread([&] {
                    ModelContext context(m_shell.world().app().container(), ModelContext::Intent::update);
                    context.find<ProjectTask>(id)->setTitle(fmt::format("Changed {}", round));
                    context.save();
                }).join();
            }));
        return times;
    }

    struct Switching {
        double firstVisit = 0; // of the screen that takes longest to be made
        double worst = 0;      // the median of the pair that takes longest
        std::string words;     // of that pair
    };

    /// From each kind of screen to each other one.
    Switching switching() {
        QAbstractItemModel& rows = *qobject_cast<SidebarScreen*>(desk().sidebar())->rows();
        const int keyRole = rows.roleNames().key("key");
        std::map<std::string, int> screens; // by the kind of what the row stands for
        for (int row = 0; row < rows.rowCount(); ++row) {
            const std::string key = rows.index(row, 0).data(keyRole).toString().toStdString();
            if (!key.empty())
                screens.try_emplace(key.substr(0, key.find(':')), row);
        }
        Switching found;
        for (const auto& [name, row] : screens) {
            found.firstVisit = std::max(found.firstVisit, untilDrawn([&] { desk().selectRow(row); }));
            settle(60);
        }
        std::map<std::string, std::vector<double>> times;
        for (int round = 0; round < 3; ++round)
            for (const auto& [from, start] : screens)
                for (const auto& [to, end] : screens) {
                    if (start == end)
                        continue;
                    desk().selectRow(start);
                    settle(60);
                    times[from + " to " + to].push_back(untilDrawn([&] { desk().selectRow(end); }));
                }
        for (const auto& [words, all] : times)
            if (const double median = share(all, 0.5); median > found.worst) {
                found.worst = median;
                found.words = words;
            }
        return found;
    }

    Shell& m_shell;
    QQuickWindow& m_window;
    int m_frames = 0;
    double m_first = 0;
};

int measure(int count, char** arguments) {
    int idleSeconds = 60;
    const bool isFirstFrameOnly = count > 1 && std::strcmp(arguments[1], "--first-frame") == 0;
    if (count > 2 && std::strcmp(arguments[1], "--idle") == 0)
        std::from_chars(arguments[2], arguments[2] + std::strlen(arguments[2]), idleSeconds);
    Shell::prepare();
    int one = 1;
    QGuiApplication application(one, arguments);
    StandardErrorLog log;
    Shell shell(ProcessInfo::of(one, arguments), Appearance::Scheme::light, log);
    if (shell.desk() == nullptr)
        throw std::runtime_error("the store can't be opened");
    DesktopBench bench(shell);
    if (isFirstFrameOnly) {
        fmt::print("{:.1f}\n", bench.firstFrame());
        std::fflush(stdout);
        std::_Exit(0); // a profiler sees nothing of the end
    }
    bench.run(idleSeconds);
    return 0;
}

} // namespace
} // namespace quillorn

int main(int count, char** arguments) {
    try {
        return quillorn::measure(count, arguments);
    } catch (const std::exception& error) {
        fmt::print(stderr, "quillorn-desktop-bench: {}\n", error.what());
        return 1;
    }
}
