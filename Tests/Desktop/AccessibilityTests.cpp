#include "DesktopFixture.h"
#include "Models/Client.h"
#include "Models/Note.h"
#include "Models/Project.h"
#include "Models/Tag.h"

#include <QAccessible>
#include <QQmlEngine>
#include <QQmlIncubator>
#include <QRegularExpression>
#include <algorithm>
#include <fmt/format.h>
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
    return item != nullptr && item->inherits("QQuickListView");
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
    /// Presses the control of that name as a screen reader does.
    void act(const QString& name) {
        std::vector<QAccessibleInterface*> controls;
        collect(QAccessible::queryAccessibleInterface(&shell().window()), controls);
        for (QAccessibleInterface* control : controls)
            if (control->text(QAccessible::Name) == name)
                return control->actionInterface()->doAction(control->actionInterface()->actionNames().first());
        ADD_FAILURE() << "nothing to press: " << name.toStdString();
    }
    static QString idOf(const Entity& record) { return toQString(record.id().string()); }

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
    desk().show("note", idOf(*context().fetch<Note>().front()));
    walk("note");
    act("Preview");
    walk("preview");
    for (const char* command :
         {"newClient", "newProject", "newTask", "newNote", "logTime", "goTo", "showKeys", "importReminders"}) {
        desk().command(command);
        EXPECT_TRUE(QTest::qWaitFor([&] { return frontOf(shell().window()) != shell().window().contentItem(); }));
        walk(command);
        press(Qt::Key_Escape);
        EXPECT_TRUE(QTest::qWaitFor([&] { return frontOf(shell().window()) == shell().window().contentItem(); }));
    }
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    desk().command("showToday");
    desk().selectTask(idOf(task));
    walk("from right to left");
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
