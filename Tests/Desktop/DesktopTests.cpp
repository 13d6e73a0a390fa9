#include "DesktopFixture.h"
#include "Records/NoteRequests.h"
#include "Records/ProjectRequests.h"
#include "Support/BusDaemon.h"

#include <QAbstractItemModelTester>
#include <QGuiApplication>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <filesystem>
#include <gtest/gtest.h>
#include <random>

namespace quillorn {

namespace {

TEST_F(DesktopTest, everyScreenIsDrawnInBothPalettesWithoutAWarningOrARequest) {
    const std::string hostile = "<img src='http://127.0.0.1:9/a.png'> ![](http://127.0.0.1:9/b.png) \u202E end";
    for (const Appearance::Scheme each : {Appearance::Scheme::light, Appearance::Scheme::dark}) {
        scheme = each;
        m_shell.reset();
        CreateProjectRequest request;
        request.name = hostile;
        Project& project = createProject(context(), request, now());
        ProjectTask& task = addTask(hostile.c_str());
        task.setProject(&project);
        addComment(task, hostile, now());
        CreateNoteRequest note;
        note.content = hostile;
        createNote(context(), note, now());
        shell().world().app().mainStore().save();
        for (const char* key : {"today", "dailySummary", "upcoming", "allTasks", "activityLog", "allNotes"}) {
            QAbstractItemModel& rows = *qobject_cast<SidebarScreen*>(desk().sidebar())->rows();
            const int role = rows.roleNames().key("key");
            for (int row = 0; row < rows.rowCount(); ++row)
                if (rows.data(rows.index(row, 0), role).toString() == key)
                    desk().selectRow(row);
            EXPECT_EQ(desk().selection(), key);
            EXPECT_FALSE(shell().window().grabWindow().isNull());
        }
        desk().show("project", toQString(project.id().string()));
        auto* record = qobject_cast<RecordScreen*>(desk().record());
        ASSERT_NE(record, nullptr);
        for (const QVariant& tab : record->tabs()) {
            record->setTab(tab.toMap()["tag"].toString());
            shell().window().grabWindow();
        }
        desk().selectTask(toQString(task.id().string()));
        shell().window().grabWindow();
        for (const char* command : {"newClient", "newProject", "newTask", "newNote", "logTime"}) {
            desk().command(command);
            EXPECT_TRUE(QTest::qWaitFor([&] { return desk().form() != nullptr || desk().entry() != nullptr; }))
                << command;
            shell().window().grabWindow();
            desk().closeForm({});
            desk().closeEntry();
        }
        for (const char* command : {"quickAdd", "importReminders", "goTo", "showKeys", "settings"}) {
            desk().command(command);
            QCoreApplication::processEvents();
            for (QWindow* window : QGuiApplication::allWindows()) {
                auto* drawn = qobject_cast<QQuickWindow*>(window);
                EXPECT_FALSE(drawn != nullptr && drawn->isVisible() && drawn->grabWindow().isNull()) << command;
            }
            desk().closeQuickAdd();
            desk().closeReminderImport();
            QTest::keyClick(&shell().window(), Qt::Key_Escape);
        }
    }
    EXPECT_EQ(warnings.join('\n').toStdString(), "");
}

TEST_F(DesktopTest, tasksAreWorkedOnByMouseAndKeyboardAndChangesOfOthersShow) {
    ProjectTask& task = addTask("Write the offer");
    desk().command("showAllTasks");
    ASSERT_TRUE(QTest::qWaitFor([&] { return itemWith("Write the offer") != nullptr; }));
    shell().window().grabWindow(); // by then all stands where it stays
    click("Write the offer");
    ASSERT_EQ(desk().selectedTask().toStdString(), task.id().string());
    QTest::keyClick(&shell().window(), Qt::Key_Return, Qt::ControlModifier);
    EXPECT_TRUE(task.isCompleted());
    EXPECT_TRUE(desk().canUndo());
    QTest::keyClick(&shell().window(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_FALSE(task.isCompleted());

    ModelContext other(shell().world().app().container(), ModelContext::Intent::update);
    other.find<ProjectTask>(task.id())->setTitle("Send the offer");
    other.save();
    EXPECT_TRUE(QTest::qWaitFor([&] { return itemWith("Send the offer") != nullptr; }));
    EXPECT_EQ(desk().selectedTask().toStdString(), task.id().string());
    EXPECT_EQ(warnings.join('\n').toStdString(), "");
}

TEST_F(DesktopTest, theKeyboardLeadsEverywhereAndTasksAreDraggedToProjects) {
    ProjectTask& task = addTask("Write the offer");
    CreateProjectRequest request;
    for (const char* name : {"Anvil", "Bridge"}) {
        request.name = name;
        createProject(context(), request, now());
    }
    shell().world().app().mainStore().save();
    desk().command("showAllTasks");
    ASSERT_TRUE(QTest::qWaitFor([&] { return itemWith("Write the offer") && itemWith("Bridge"); }));
    press(Qt::Key_K, Qt::ControlModifier);
    for (const Qt::Key key : {Qt::Key_B, Qt::Key_R, Qt::Key_I})
        press(key);
    press(Qt::Key_Return);
    EXPECT_EQ(desk().title(), "Bridge");

    desk().command("showAllTasks");
    ASSERT_TRUE(QTest::qWaitFor([&] { return itemWith("Write the offer") != nullptr; }));
    shell().window().grabWindow();
    drag("Write the offer", middle("Bridge"));
    ASSERT_NE(task.project(), nullptr);
    EXPECT_EQ(task.project()->name(), "Bridge");
    const auto isAbove = [&](const char* upper, const char* lower) {
        shell().window().grabWindow();
        return itemWith(upper)->mapToScene({}).y() < itemWith(lower)->mapToScene({}).y();
    };
    EXPECT_TRUE(isAbove("Anvil", "Bridge"));
    drag("Bridge", middle("Anvil"));
    EXPECT_TRUE(isAbove("Bridge", "Anvil"));
    click("Bridge");
    press(Qt::Key_F6);
    press(Qt::Key_Down, Qt::AltModifier);
    EXPECT_TRUE(isAbove("Anvil", "Bridge"));
    EXPECT_EQ(warnings.join('\n').toStdString(), "");
}

TEST_F(DesktopTest, aTaskIsAddedInAWindowOfItsOwnWithoutTheMainOne) {
    m_shell.emplace(ProcessInfo{.arguments = {demoArgument}, .environment = {}}, scheme, log, nullptr,
                    Shell::Start::quickAdd);
    EXPECT_FALSE(shell().window().isVisible());
    QQuickWindow* window = nullptr;
    for (QWindow* each : QGuiApplication::allWindows())
        if (each->isVisible())
            window = qobject_cast<QQuickWindow*>(each);
    ASSERT_NE(window, nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    for (const char letter : std::string("call bob"))
        QTest::keyClick(window, letter);
    EXPECT_FALSE(window->grabWindow().isNull());
    QTest::keyClick(window, Qt::Key_Return);
    EXPECT_EQ(context().fetch<ProjectTask>({.where = "title = ?", .values = {std::string("call bob")}}).size(), 1U);
    EXPECT_EQ(desk().quickAdd(), nullptr);
    EXPECT_EQ(warnings.join('\n').toStdString(), "");
}

struct Row {
    UUID id;
    int value = 0;

    bool operator==(const Row&) const = default;
};
constexpr Role<Row> rowRoles[] = {role<&Row::value>("value")};

TEST_F(DesktopTest, modelsFollowTheirListsStepByStep) {
    ObservableList<Row> list;
    ListModel<Row> model(list, rowRoles);
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    std::mt19937 random(7);
    std::vector<Row> all;
    for (int i = 0; i < 60; ++i)
        all.push_back({UUID::parse("00000000-0000-4000-8000-0000000000" + std::to_string(10 + i)).value(), i});
    for (int round = 0; round < 200; ++round) {
        std::ranges::shuffle(all, random);
        std::vector<Row> next(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(random() % all.size()));
        for (Row& row : next)
            row.value = static_cast<int>(random() % 3);
        list.assign(next);
        ASSERT_EQ(model.rowCount(), static_cast<int>(next.size()));
        for (int row = 0; row < model.rowCount(); ++row)
            ASSERT_EQ(model.data(model.index(row), Qt::UserRole).toInt(), next[static_cast<std::size_t>(row)].value);
    }
}

TEST_F(DesktopTest, theSampleHasWorkAndVanishes) {
    std::optional<SampleStore> sample(std::in_place);
    m_shell.emplace(ProcessInfo{}, scheme, log, &*sample);
    const std::filesystem::path folder = *shell().world().paths().home();
    EXPECT_TRUE(QTest::qWaitFor([&] { return itemWith("Ask Farid about the illustrations") != nullptr; }));
    EXPECT_EQ(storeFile(shell().world().paths()).string().rfind(folder.string(), 0), 0u);
    m_shell.reset();
    sample.reset();
    EXPECT_FALSE(std::filesystem::exists(folder));
    EXPECT_EQ(warnings.join('\n').toStdString(), "");
}

TEST_F(DesktopTest, theWindowAsksNoNetwork) {
    RefusedNetwork refused;
    const std::unique_ptr<QNetworkAccessManager> manager(refused.create(nullptr));
    QNetworkReply* reply = manager->get(QNetworkRequest(QUrl("http://127.0.0.1:9/")));
    EXPECT_TRUE(QTest::qWaitFor([&] { return reply->isFinished(); }));
    EXPECT_EQ(reply->error(), QNetworkReply::ContentAccessDenied);
}

} // namespace
} // namespace quillorn

int main(int count, char** arguments) {
    testing::InitGoogleTest(&count, arguments);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const quillorn::BusDaemon bus; // not the user's own
    qputenv("DBUS_SESSION_BUS_ADDRESS", QByteArray::fromStdString(bus.address()));
    quillorn::Shell::prepare();
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& message) {
        if (type != QtDebugMsg && type != QtInfoMsg && !message.contains("XDG_RUNTIME_DIR") &&
            !message.contains("does not support raise"))
            quillorn::warnings.append(message);
    });
    const QGuiApplication application(count, arguments);
    return RUN_ALL_TESTS();
}
