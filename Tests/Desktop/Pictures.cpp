// Draws the window's screens into files, for people to look at: DesktopPictures FOLDER [light|dark]

#include "Desktop/Shell.h"
#include "Platform/SystemLog.h"

#include <QDir>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QQuickWindow>
#include <iostream>

namespace quillorn {
namespace {

/// Lets the window draw what has changed.
void settle() {
    QElapsedTimer time;
    time.start();
    while (time.elapsed() < 400)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
}

int run(int count, char** arguments) {
    if (count < 2) {
        std::cerr << "DesktopPictures FOLDER [light|dark]\n";
        return 2;
    }
    const bool isDark = count > 2 && std::string(arguments[2]) == "dark";
    const QDir folder(arguments[1]);
    Shell::prepare();
    int one = 1;
    QGuiApplication application(one, arguments);
    StandardErrorLog log;
    Shell shell(ProcessInfo::of(one, arguments), isDark ? Appearance::Scheme::dark : Appearance::Scheme::light, log);
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
    return 0;
}

} // namespace
} // namespace quillorn

int main(int count, char** arguments) {
    return quillorn::run(count, arguments);
}
