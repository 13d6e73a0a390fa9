// Draws the window's screens into files, for people to look at; the usage below says how.

#include "Desktop/Shell.h"
#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Platform/SystemLog.h"

#include <QDBusVariant>
#include <QDir>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickWindow>
#include <algorithm>
#include <iostream>
#include <type_traits>

namespace quillorn {
namespace {

/// Lets the window draw what has changed.
void settle() {
    QElapsedTimer time;
    time.start();
    while (time.elapsed() < 400)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
}

constexpr auto usage = "DesktopPictures FOLDER [light|dark] [high-contrast] [right-to-left] [sample] [WIDTHxHEIGHT]\n"
                       "    all screens on the user's store, or on the sample\n"
                       "DesktopPictures --readme FOLDER\n"
                       "    those of the README\n";

/// As the desktop says it.
void askForHighContrast(QQuickWindow& window) {
    const QVariant look = qmlEngine(&window)->rootContext()->contextProperty("Look");
    look.value<Appearance*>()->settingChanged("org.freedesktop.appearance", "contrast", QDBusVariant(1U));
}

/// The window in front.
QQuickWindow& front(Shell& shell) {
    for (QWindow* each : QGuiApplication::allWindows())
        if (auto* window = qobject_cast<QQuickWindow*>(each);
            window != nullptr && window->isVisible() && window != &shell.window())
            return *window;
    return shell.window();
}

void takeAll(Shell& shell, const QDir& folder) {
    int number = 0;
    const auto take = [&](const QString& name) {
        settle();
        front(shell).grabWindow().save(
            folder.filePath(QString("%1-%2.png").arg(++number, 2, 10, QChar('0')).arg(name)));
    };
    DesktopApp& desk = *shell.desk();
    QAbstractItemModel& rows = *qobject_cast<SidebarScreen*>(desk.sidebar())->rows();
    QStringList taken; // a client and a project are enough
    for (int row = 0; row < rows.rowCount() && taken.size() < 2; ++row) {
        desk.selectRow(row);
        auto* record = qobject_cast<RecordScreen*>(desk.record());
        if (record == nullptr) {
            take(desk.title());
        } else if (!taken.contains(desk.column())) {
            taken << desk.column();
            for (const QVariant& tab : record->tabs()) {
                record->setTab(tab.toMap()["tag"].toString());
                take(desk.column() + "-" + record->tab());
            }
        }
    }
    desk.command("showToday");
    settle();
    QAbstractItemModel& tasks = *qobject_cast<TaskListScreen*>(desk.tasks())->rows();
    const int idRole = tasks.roleNames().key("taskId");
    const int kindRole = tasks.roleNames().key("kind");
    for (int row = 0; row < tasks.rowCount(); ++row)
        if (tasks.data(tasks.index(row, 0), kindRole).toInt() == 2) {
            desk.selectTask(tasks.data(tasks.index(row, 0), idRole).toString());
            break;
        }
    take("task");
    for (const char* sheet : {"newTask", "newProject", "logTime", "goTo", "showKeys", "importReminders"}) {
        desk.command(sheet);
        take(sheet);
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, {});
        QCoreApplication::sendEvent(&shell.window(), &escape);
    }
    desk.command("quickAdd");
    take("quickAdd");
    desk.closeQuickAdd();
    desk.command("settings");
    settle();
    front(shell).resize(front(shell).minimumSize().expandedTo(shell.window().size() / 2));
    auto& tabs = *qobject_cast<SettingsTabsScreen*>(desk.settingsTabs());
    for (int tab = 0; tab < tabs.tabs().size(); ++tab) {
        tabs.select(tab);
        take("settings-" + tabs.tabs()[tab].toMap()["label"].toString());
    }
}

void takeForReadme(const QDir& folder, bool isDark, SystemLog& log) {
    const SampleStore sample;
    Shell shell({}, isDark ? Appearance::Scheme::dark : Appearance::Scheme::light, log, &sample);
    shell.window().resize(1100, 720);
    DesktopApp& desk = *shell.desk();
    const auto take = [&](const QString& name) {
        settle();
        const QImage picture = shell.window().grabWindow().convertToFormat(QImage::Format_RGB888);
        picture.save(folder.filePath(QString("%1-%2.png").arg(name, isDark ? "dark" : "light")), nullptr, 0);
    };
    const auto idOf = [&]<class T>(const std::vector<T*>& records, std::string_view name) {
        const auto found = std::ranges::find(records, name, [](const T* each) -> const std::string& {
            if constexpr (std::is_same_v<T, Project>)
                return each->name();
            else
                return each->title();
        });
        return toQString((*found)->id().string());
    };
    ModelContext& context = shell.world().app().mainContext();
    auto& timer = *qobject_cast<TimerScreen*>(desk.timer());
    timer.start(idOf(context.fetch<ProjectTask>(), "Allergens on the list"));
    timer.startEarlier(15);
    desk.command("showToday");
    desk.selectTask(idOf(context.fetch<ProjectTask>(), "Allergens on the list"));
    take("today");
    desk.selectTask({});
    desk.show("project", idOf(context.fetch<Project>(), "Order system"));
    auto& record = *qobject_cast<RecordScreen*>(desk.record());
    record.setTab("time");
    take("time");
}

int run(int count, char** arguments) {
    const std::vector<std::string> words(arguments + 1, arguments + count);
    if (words.empty() || (words[0] == "--readme" && words.size() < 2)) {
        std::cerr << usage;
        return 2;
    }
    const auto wants = [&](std::string_view word) { return std::ranges::find(words, word) != words.end(); };
    Shell::prepare();
    int one = 1;
    QGuiApplication application(one, arguments);
    StandardErrorLog log;
    if (words[0] == "--readme") {
        for (const bool isDark : {false, true})
            takeForReadme(QDir(arguments[2]), isDark, log);
        return 0;
    }
    if (wants("right-to-left"))
        QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    const SampleStore sample;
    Shell shell(ProcessInfo::of(one, arguments), wants("dark") ? Appearance::Scheme::dark : Appearance::Scheme::light,
                log, wants("sample") ? &sample : nullptr);
    if (wants("high-contrast"))
        askForHighContrast(shell.window());
    const QStringList size = QString(arguments[count - 1]).split('x');
    shell.window().resize(size.size() == 2 ? QSize(size[0].toInt(), size[1].toInt()) : QSize(1280, 800));
    takeAll(shell, QDir(arguments[1]));
    return 0;
}

} // namespace
} // namespace quillorn

int main(int count, char** arguments) {
    return quillorn::run(count, arguments);
}
