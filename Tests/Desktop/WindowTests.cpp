#include "DesktopFixture.h"
#include "Models/Project.h"
#include "Records/ProjectRequests.h"

#include <QDesktopServices>
#include <QTimer>
#include <fstream>

namespace quillorn {
namespace {

/// What people do in the window by mouse and keys.
struct WindowTest : DesktopTest {
    ~WindowTest() override { EXPECT_EQ(warnings.join('\n').toStdString(), ""); }

    /// Presses the key until the keyboard is at what shows that text.
    bool pressUntil(const QString& text, Qt::Key key) {
        for (int presses = 0; presses < 100; ++presses) {
            const QQuickItem* item = shell().window().activeFocusItem();
            if (item != nullptr && item->property("text").toString() == text)
                return true;
            press(key);
        }
        return false;
    }
    void awaitText(const QString& text) {
        EXPECT_TRUE(QTest::qWaitFor([&] { return itemWith(text) != nullptr; })) << text.toStdString();
        shell().window().grabWindow(); // by then all stands where it stays
    }
    void save() { shell().world().app().mainStore().save(); }
    Project& addProject(const char* name) {
        CreateProjectRequest request;
        request.name = name;
        Project& project = createProject(context(), request, now());
        save();
        return project;
    }
};

TEST_F(WindowTest, whatIsTypedStaysWhenSomebodyElseChangesTheTask) {
    ProjectTask& task = addTask("Write the offer");
    desk().selectTask(toQString(task.id().string()));
    ASSERT_TRUE(pressUntil("Write the offer", Qt::Key_Tab));
    QQuickItem* title = shell().window().activeFocusItem();
    press(Qt::Key_End);
    press(Qt::Key_S);
    ModelContext other(shell().world().app().container(), ModelContext::Intent::update);
    other.find<ProjectTask>(task.id())->setTitle("Send it");
    other.save();
    awaitText("Changed elsewhere meanwhile. Saving replaces that.");
    EXPECT_EQ(title->property("text").toString(), "Write the offers");
    EXPECT_TRUE(title->hasActiveFocus());
    click("Show Theirs");
    EXPECT_EQ(title->property("text").toString(), "Send it");
    EXPECT_EQ(task.title(), "Send it");
}

TEST_F(WindowTest, aStoreThatCantBeOpenedShowsWhereTheBackupsAre) {
    const SampleStore folder;
    const std::filesystem::path file = storeFile(*folder.paths());
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file) << std::string(4096, 'x');
    m_shell.emplace(ProcessInfo{}, scheme, log, &folder);
    ASSERT_EQ(shell().desk(), nullptr);
    awaitText("Quillorn couldn't open your data");
    QTimer::singleShot(5000, [] { QCoreApplication::exit(1); });
    ASSERT_TRUE(pressUntil("Quit", Qt::Key_Tab));
    QTimer::singleShot(0, [&] { press(Qt::Key_Return); });
    EXPECT_EQ(QCoreApplication::exec(), 0);
}

TEST_F(WindowTest, cardsGoToOtherColumnsByMouseAndKeys) {
    Project& project = addProject("Bridge");
    ProjectTask& task = addTask("Write the offer");
    task.setProject(&project);
    save();
    desk().show("project", toQString(project.id().string()));
    qobject_cast<RecordScreen*>(desk().record())->setTab("tasks");
    awaitText("Write the offer");
    click("Board");
    awaitText("In Progress");
    drag("Write the offer", middle("In Progress"));
    EXPECT_EQ(task.status(), TaskStatus::inProgress);
    shell().window().grabWindow();
    click("Write the offer");
    for (const TaskStatus status : {TaskStatus::review, TaskStatus::done}) {
        press(Qt::Key_Right, Qt::AltModifier);
        shell().window().grabWindow();
        EXPECT_EQ(task.status(), status);
    }
}

TEST_F(WindowTest, tasksGetTagsByMouseAndProjectsByTheMenuOfTheirRow) {
    const SampleStore sample;
    m_shell.emplace(ProcessInfo{}, scheme, log, &sample);
    const std::string title = "Ask Farid about the illustrations";
    const ProjectTask& task = *context().fetch<ProjectTask>({.where = "title = ?", .values = {title}}).front();
    awaitText(title.c_str());
    click("Tags");
    awaitText("design");
    drag(title.c_str(), middle("design"));
    EXPECT_EQ(task.tags().size(), 2U); // "call" was there
    click(title.c_str());
    press(Qt::Key_F10, Qt::ShiftModifier);
    ASSERT_TRUE(pressUntil("Move to Project", Qt::Key_Down));
    press(Qt::Key_Right);
    ASSERT_TRUE(pressUntil("Office", Qt::Key_Down));
    press(Qt::Key_Return);
    ASSERT_NE(task.project(), nullptr);
    EXPECT_EQ(task.project()->name(), "Office");
}

} // namespace
} // namespace quillorn
