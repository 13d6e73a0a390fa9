// Draws the window's screens into files, for people to look at: DesktopPictures FOLDER [light|dark] draws all of them
// on the user's store, DesktopPictures --readme FOLDER those of the README on the sample.

#include "Desktop/Shell.h"
#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Platform/SystemLog.h"

#include <QDir>
#include <QElapsedTimer>
#include <QGuiApplication>
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

void takeAll(Shell& shell, const QDir& folder, bool isDark) {
    shell.window().resize(1280, 800);
    int number = 0;
    const auto take = [&](const QString& name) {
        settle();
        shell.window().grabWindow().save(folder.filePath(
            QString("%1-%2-%3.png").arg(++number, 2, 10, QChar('0')).arg(name, isDark ? "dark" : "light")));
    };
    DesktopApp& desk = *shell.desk();
    for (const char* command : {"showToday", "showUpcoming", "showAllTasks"}) {
        desk.command(command);
        take(command);
    }
    QAbstractItemModel& rows = *qobject_cast<SidebarScreen*>(desk.sidebar())->rows();
    for (int row = 0; row < rows.rowCount() && row < 40; ++row) {
        desk.selectRow(row);
        if (auto* record = qobject_cast<RecordScreen*>(desk.record())) {
            for (const QVariant& tab : record->tabs()) {
                record->setTab(tab.toMap()["tag"].toString());
                take(desk.title().replace('/', '-') + "-" + record->tab());
            }
        } else {
            take(desk.title().replace('/', '-'));
        }
        if (row > 14)
            break;
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
    desk.command("newTask");
    take("new-task");
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
        std::cerr << "DesktopPictures FOLDER [light|dark] | --readme FOLDER\n";
        return 2;
    }
    Shell::prepare();
    int one = 1;
    QGuiApplication application(one, arguments);
    StandardErrorLog log;
    if (words[0] == "--readme") {
        for (const bool isDark : {false, true})
            takeForReadme(QDir(arguments[2]), isDark, log);
        return 0;
    }
    const bool isDark = words.size() > 1 && words[1] == "dark";
    Shell shell(ProcessInfo::of(one, arguments), isDark ? Appearance::Scheme::dark : Appearance::Scheme::light, log);
    takeAll(shell, QDir(arguments[1]), isDark);
    return 0;
}

} // namespace
} // namespace quillorn

int main(int count, char** arguments) {
    return quillorn::run(count, arguments);
}
