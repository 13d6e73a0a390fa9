#include "DesktopFixture.h"
#include "Models/Client.h"
#include "Models/Note.h"
#include "Models/Project.h"
#include "Models/Settings.h"
#include "Models/Tag.h"
#include "Support/ScopedEnvironment.h"
#include "Support/ScriptedServer.h"

#include <QAccessible>
#include <QQmlEngine>
#include <QQmlIncubator>
#include <QRegularExpression>
#include <algorithm>
#include <fmt/format.h>
#include <fstream>
#include <set>

namespace quillorn {
namespace {

const std::set<QAccessible::Role> controlRoles = {
    QAccessible::Button,       QAccessible::CheckBox, QAccessible::ComboBox, QAccessible::List,
    QAccessible::EditableText, QAccessible::PageTab,  QAccessible::ListItem, QAccessible::Tree,
    QAccessible::RadioButton,  QAccessible::SpinBox,  QAccessible::TreeItem, QAccessible::Link,
    QAccessible::MenuItem};

QQuickItem* itemOf(QAccessibleInterface& control) {
    return qobject_cast<QQuickItem*>(control.object());
}

/// What a person can use below, as screen readers find it.
void collect(QAccessibleInterface* root, std::vector<QAccessibleInterface*>& found) {
    if (root == nullptr || root->state().invisible || root->state().disabled)
        return;
    // The toolkit says of every word that it takes the keyboard, and of headings in lists that they can be pressed.
    const bool isText = root->role() == QAccessible::StaticText || root->role() == QAccessible::Heading;
    const QQuickItem* item = itemOf(*root);
    QAccessibleActionInterface* actions = root->actionInterface();
    if (item != nullptr && item->isEnabled() && !isText && actions != nullptr && !actions->actionNames().empty())
        found.push_back(root);
    for (int child = 0; child < root->childCount(); ++child)
        collect(root->child(child), found);
}

/// What is open above all else, or the window.
QQuickItem* frontOf(const QQuickWindow& window) {
    QQuickItem* front = window.contentItem();
    for (QQuickItem* child : window.contentItem()->childItems())
        if (child->inherits("QQuickOverlay"))
            for (QQuickItem* popup : child->childItems())
                if (popup->isVisible() && popup->isFocusScope())
                    front = popup;
    return front;
}

bool isIn(const QQuickItem* item, const QQuickItem* root) {
    return item == root || (item != nullptr && isIn(item->parentItem(), root));
}

bool isList(const QQuickItem* item) {
    return item != nullptr && item->inherits("QQuickItemView");
}

/// Whether nothing that clips hides where the keyboard is.
bool isSeen(QQuickItem* item) {
    const QRectF place = item->mapRectToScene({0, 0, item->width(), qMin(item->height(), 20.)});
    for (QQuickItem* each = item->parentItem(); each != nullptr; each = each->parentItem())
        if ((each->clip() || each->parentItem() == nullptr) &&
            !each->mapRectToScene(each->boundingRect()).adjusted(-3, -3, 3, 3).contains(place))
            return false;
    return true;
}

/// Goes through a window by Tab and through its accessibility tree, and says what is wrong.
class Walk {
  public:
    explicit Walk(QQuickWindow& window, std::string screen) : m_window(window), m_screen(std::move(screen)) {
        QCoreApplication::processEvents();
        window.grabWindow(); // by then all stands where it stays, but for rows that are made in spare time
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return qmlEngine(&window)->incubationController()->incubatingObjectCount() == 0; }));
        QAccessible::setActive(true); // once more for what was made since
        goRound(Qt::Key_Tab);
        const std::set<QQuickItem*> forwards = m_reached;
        goRound(Qt::Key_Backtab);
        for (QQuickItem* item : forwards)
            if (!isReached(item))
                fault("not reached backwards", item);
        std::vector<QAccessibleInterface*> controls;
        collect(QAccessible::queryAccessibleInterface(&window), controls);
        const QQuickItem* front = frontOf(window);
        std::erase_if(controls, [&](auto* control) { return !isIn(itemOf(*control), front); });
        if (controls.empty())
            fault("no controls", nullptr);
        for (QAccessibleInterface* control : controls)
            check(*control);
    }
    std::set<std::string> faults;

  private:
    void goRound(Qt::Key key) {
        m_reached.clear();
        for (int presses = 0; presses < 400; ++presses) {
            QTest::keyClick(&m_window, key);
            QQuickItem* item = m_window.activeFocusItem();
            if (item == nullptr)
                return fault("lost", item);
            QCoreApplication::processEvents();
            if (!isSeen(item))
                fault("out of sight", item);
            if (!m_reached.insert(item).second)
                return;
        }
        fault("no end", nullptr);
    }
    void check(QAccessibleInterface& control) {
        static const QRegularExpression raw("[\\x00-\\x1f\\x7f\\x{202a}-\\x{202e}\\x{2066}-\\x{2069}]|undefined|null|"
                                            "^#[0-9A-F]{6}$|[0-9A-F]{8}-[0-9A-F]{4}-",
                                            QRegularExpression::CaseInsensitiveOption);
        QQuickItem* item = itemOf(control);
        // Of a password the toolkit tells no name.
        const QString name = control.text(control.state().passwordEdit ? QAccessible::Description : QAccessible::Name);
        if (name.trimmed().isEmpty() || name.contains(raw))
            fault("no good name", item);
        if (!controlRoles.contains(control.role()))
            fault("role " + std::to_string(control.role()), item);
        QQuickItem* content = item->parentItem(); // of a list, where this is a row
        const bool isRow = content != nullptr && isList(content->parentItem()) && isReached(content->parentItem());
        if (!isRow && !isReached(item))
            fault("not reached", item);
        if (isList(item) &&
            std::ranges::any_of(m_reached, [&](auto* each) { return each != item && isIn(each, item); }))
            checkRows(*item);
    }
    /// Keys lead from row to row.
    void checkRows(QQuickItem& list) {
        list.forceActiveFocus(Qt::TabFocusReason);
        QTest::keyClick(&m_window, Qt::Key_Home);
        const QQuickItem* first = m_window.activeFocusItem();
        QTest::keyClick(&m_window, Qt::Key_Down);
        if (m_window.activeFocusItem() == first && list.property("count").toInt() > 2)
            fault("no way down", &list);
    }
    /// By itself, or a list by one of its rows.
    bool isReached(QQuickItem* item) const {
        return std::ranges::any_of(
            m_reached, [&](const QQuickItem* each) { return each == item || (isList(item) && isIn(each, item)); });
    }
    void fault(const std::string& what, QQuickItem* item) {
        const QPointF place = item != nullptr ? item->mapToScene({}) : QPointF();
        QAccessibleInterface* control = QAccessible::queryAccessibleInterface(item);
        faults.insert(fmt::format(
            "{}: {}: {} \"{}\" at {}, {}", m_screen, what, item != nullptr ? item->metaObject()->className() : "",
            control != nullptr ? control->text(QAccessible::Name).toStdString() : "", place.x(), place.y()));
    }

    QQuickWindow& m_window;
    std::string m_screen;
    std::set<QQuickItem*> m_reached;
};

struct AccessibilityTest : DesktopTest {
    AccessibilityTest() { QAccessible::setActive(true); }
    ~AccessibilityTest() override { QAccessible::setActive(false); }

    void walk(const std::string& screen, QQuickWindow* window = nullptr) {
        faults.merge(Walk(window != nullptr ? *window : shell().window(), screen).faults);
    }
    QAccessibleInterface* control(const QString& name) {
        const QRegularExpression pattern(QRegularExpression::anchoredPattern(name));
        std::vector<QAccessibleInterface*> controls;
        collect(QAccessible::queryAccessibleInterface(&shell().window()), controls);
        const auto found = std::ranges::find_if(
            controls, [&](auto* each) { return pattern.match(each->text(QAccessible::Name)).hasMatch(); });
        EXPECT_NE(found, controls.end()) << "no such control: " << name.toStdString();
        return found != controls.end() ? *found : nullptr;
    }
    /// Presses it as a screen reader does.
    void act(const QString& name) {
        if (QAccessibleInterface* found = control(name))
            found->actionInterface()->doAction(found->actionInterface()->actionNames().first());
    }
    bool awaitFront(bool isPopup) {
        return QTest::qWaitFor(
            [&] { return (frontOf(shell().window()) != shell().window().contentItem()) == isPopup; });
    }
    /// Walks through what opens over the window, and leaves it by Escape.
    template <typename Open>
    void walkOver(const QString& screen, const Open& open) {
        const QQuickItem* before = shell().window().activeFocusItem();
        open();
        EXPECT_TRUE(awaitFront(true)) << screen.toStdString();
        walk(screen.toStdString());
        press(Qt::Key_Escape);
        EXPECT_TRUE(awaitFront(false)) << screen.toStdString();
        EXPECT_EQ(shell().window().activeFocusItem(), before) << screen.toStdString();
    }
    /// What the control of that name opens.
    void walkBehind(const QString& name) {
        QAccessibleInterface* button = control(name);
        ASSERT_NE(button, nullptr);
        itemOf(*button)->forceActiveFocus(Qt::TabFocusReason);
        walkOver(name, [&] { press(Qt::Key_Space); });
    }
    /// One reminder that a model finds to be of the project.
    void prepareReminder(const QString& project) {
        Settings settings(shell().world().settings());
        settings.set(setting("aiEndpoint"), model.url());
        settings.set(setting("aiModel"), std::string("m"));
        model.standBy({ScriptedServer::answer(
            200,
            fmt::format(
                R"({{"choices":[{{"message":{{"content":"{{\"items\":[{{\"reminder_id\":\"a\",)"
                R"(\"is_project_item\":true,\"confidence\":1,\"task_title\":\"Call\",\"project_id\":\"{}\"}}]}}"}}}}]}})",
                project.toStdString()))});
        const std::filesystem::path list = shell().world().paths().applicationSupport() / "calendars/Inbox";
        std::filesystem::create_directories(list);
        std::ofstream(list / "a.ics")
            << "BEGIN:VCALENDAR\nBEGIN:VTODO\nUID:a\nSUMMARY:Call\nEND:VTODO\nEND:VCALENDAR\n";
    }
    void awaitStage(const char* stage) {
        const QObject& import = *desk().reminderImport();
        EXPECT_TRUE(QTest::qWaitFor([&] {
            return import.property("stage") == stage && !import.property("isBusy").toBool();
        })) << stage
            << ": " << import.property("error").toString().toStdString();
    }
    static QString idOf(const Entity& record) { return toQString(record.id().string()); }

    ScopedEnvironment noProxy{"no_proxy", "127.0.0.1"};
    ScriptedServer model;
    SampleStore sample;
    std::set<std::string> faults;
};

TEST_F(AccessibilityTest, everyControlHasANameAndIsReachedByKeys) {
    m_shell.emplace(ProcessInfo{}, scheme, log, &sample);
    shell().window().requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&shell().window()));
    for (const char* kind : {"today", "upcoming", "allTasks", "dailySummary", "activityLog", "allNotes"}) {
        desk().show(kind, {});
        walk(kind);
    }
    desk().show("allTasks", {});
    walkBehind("Meeting: .*");
    desk().show("tag", idOf(*context().fetch<Tag>().front()));
    walk("tag");
    ProjectTask& task =
        *context().fetch<ProjectTask>({.where = "title = ?", .values = {std::string("Sketch the pages")}}).front();
    addComment(task, "As *they* wished, [see](https://example.org)", now());
    qobject_cast<TimerScreen*>(desk().timer())->start(idOf(task));
    for (const QString kind : {"client", "project"}) {
        desk().show(kind, kind == "client" ? idOf(*task.project()->client()) : idOf(*task.project()));
        auto* record = qobject_cast<RecordScreen*>(desk().record());
        ASSERT_NE(record, nullptr);
        for (const QVariant& tab : record->tabs()) {
            record->setTab(tab.toMap()["tag"].toString());
            walk(kind.toStdString() + " " + record->tab().toStdString());
        }
        record->setTab("tasks");
    }
    act("Board");
    walk("board");
    desk().selectTask(idOf(task));
    walk("task");
    walkBehind("Delete");      // asks
    walkBehind("[\\d:]+, .*"); // the timer's clock
    prepareReminder(idOf(*task.project()));
    qobject_cast<RecordScreen*>(desk().record())->setTab("chat");
    walkBehind("AI Summary");
    desk().show("note", idOf(*context().fetch<Note>().front()));
    walk("note");
    act("Preview");
    walk("preview");
    for (const char* command :
         {"newClient", "newProject", "newTask", "newNote", "logTime", "goTo", "showKeys", "importReminders"})
        walkOver(command, [&] { desk().command(command); });
    walkOver("imported", [&] {
        desk().command("importReminders");
        EXPECT_TRUE(QTest::qWaitFor([&] { return itemWith("Inbox") != nullptr; }));
        act("Inbox");
        act("Scan");
        awaitStage("review");
        walk("review");
        act("Import 1");
        awaitStage("result");
    });
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    desk().command("showToday");
    desk().selectTask(idOf(task));
    walk("from right to left");
    EXPECT_GT(middle("All Notes").x(), shell().window().width() / 2) << "the sidebar is not at the right";
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    for (const char* command : {"quickAdd", "settings"}) {
        desk().command(command);
        auto* window = qobject_cast<QQuickWindow*>(QGuiApplication::focusWindow());
        ASSERT_TRUE(QTest::qWaitFor([&] {
            window = qobject_cast<QQuickWindow*>(QGuiApplication::focusWindow());
            return window != nullptr && window != &shell().window();
        }));
        auto& tabs = *qobject_cast<SettingsTabsScreen*>(desk().settingsTabs());
        for (int tab = 0; tab < (window->title().contains("Settings") ? 7 : 1); ++tab) {
            tabs.setProperty("selected", tab);
            walk(command + std::to_string(tab), window);
        }
        window->close();
    }
    for (const std::string& fault : faults)
        ADD_FAILURE() << fault;
    EXPECT_EQ(warnings.join('\n').toStdString(), "");
}

} // namespace
} // namespace quillorn
