// What stands around the window, against a desktop that is pretended on a bus of the tests' own.

#include "App/MachineServices.h"
#include "App/WindowOnBus.h"
#include "Desktop/ActivationToken.h"
#include "Desktop/SingleInstance.h"
#include "DesktopFixture.h"
#include "Models/Settings.h"
#include "Services/TimerService.h"
#include "Support/ScopedEnvironment.h"
#include "Support/TemporaryFolder.h"

#include <QDBusConnectionInterface>
#include <QDBusMetaType>
#include <QDBusPendingCall>
#include <QDBusVirtualObject>
#include <QTimer>
#include <gtest/gtest.h>
#include <thread>

namespace quillorn {

/// (sa{sv}), as the portal describes a key.
struct PortalKey {
    QString id;
    QVariantMap properties;

    auto members() { return std::tie(id, properties); }
};

namespace {

constexpr auto watcher = "org.kde.StatusNotifierWatcher";
constexpr auto portal = "org.freedesktop.portal.Desktop";
constexpr auto portalPath = "/org/freedesktop/portal/desktop";
constexpr auto services = "com.quillorn.Quillorn";
constexpr auto notifications = "org.freedesktop.Notifications";

/// A connection that answers calls of any object by the member's name. It lives on the window's own thread: were the
/// window to wait for an answer, none would come.
struct PretendedDesktop final : QDBusVirtualObject {
    using Answer = std::function<QVariantList(const QDBusMessage&)>;

    PretendedDesktop() { bus.registerVirtualObject("/", this, QDBusConnection::SubPath); }
    ~PretendedDesktop() override { QDBusConnection::disconnectFromBus("desktop"); }
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override {
        calls[message.member()] = message;
        if (!answers.contains(message.member()))
            return false;
        bus.send(message.createReply(answers[message.member()](message)));
        return true;
    }
    void says(const QString& member, const QVariantList& answer) {
        answers[member] = [answer](const auto&) { return answer; };
    }
    QDBusPendingCall call(const QString& service, const QString& path, const char* interface, const char* member,
                          const QVariantList& arguments) {
        QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, member);
        message.setArguments(arguments);
        return bus.asyncCall(message);
    }
    static QDBusMessage reply(QDBusPendingCall pending) {
        EXPECT_TRUE(QTest::qWaitFor([&] { return pending.isFinished(); }));
        return pending.reply();
    }
    void signal(const QString& path, const char* interface, const char* member, const QVariantList& arguments) {
        QDBusMessage message = QDBusMessage::createSignal(path, interface, member);
        message.setArguments(arguments);
        bus.send(message);
    }

    QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "desktop");
    QMap<QString, Answer> answers;
    QMap<QString, QDBusMessage> calls; // the last of each
};

struct AroundTest : testing::Test {
    AroundTest() { warnings.clear(); }
    ~AroundTest() override { EXPECT_EQ(warnings.join('\n').toStdString(), ""); }

    Shell& shell() {
        if (!m_shell)
            m_shell.emplace(ProcessInfo{}, Appearance::Scheme::light, log);
        return *m_shell;
    }
    Settings settings() { return Settings(shell().world().settings()); }
    ProjectTask& addTask(const char* title) {
        ProjectTask& task = createTask(shell().world().app().mainContext(), {{}, title}, Date());
        shell().world().app().mainStore().save();
        return task;
    }
    QString servicesOwner() { return desktop.bus.interface()->serviceOwner(services).value(); }
    /// What the window offers to other programs.
    void askServices() {
        EXPECT_TRUE(QTest::qWaitFor([&] { return !servicesOwner().isEmpty(); }));
        const auto ask = [&](const char* interface, const char* member, const QVariantList& arguments) {
            return desktop.reply(desktop.call(services, "/com/quillorn/Quillorn", interface, member, arguments)).type();
        };
        EXPECT_EQ(ask("com.quillorn.Reminders1", "FindReminders", {"printer"}), QDBusMessage::ReplyMessage);
        EXPECT_EQ(ask("com.quillorn.Sync1", "GetState", {}), QDBusMessage::ReplyMessage);
    }
    DesktopSettingsScreen& pane() { return *qobject_cast<DesktopSettingsScreen*>(shell().desk()->desktopSettings()); }

    TemporaryFolder folder;
    ScopedEnvironment data{"XDG_DATA_HOME", folder.path().string()};
    ScopedEnvironment config{"XDG_CONFIG_HOME", folder.path().string()};
    RecordingLog log;
    PretendedDesktop desktop;
    std::optional<Shell> m_shell;
};

/// The item as a host of the tray sees it.
struct TrayTest : AroundTest {
    void host() {
        desktop.answers["RegisterStatusNotifierItem"] = [&](const QDBusMessage& call) {
            item = call.arguments().value(0).toString();
            return QVariantList();
        };
        shell();
        ASSERT_TRUE(desktop.bus.registerService(watcher));
        ASSERT_TRUE(QTest::qWaitFor([&] { return !item.isEmpty(); }));
    }
    QVariantMap properties() {
        const auto call = desktop.call(item, "/StatusNotifierItem", "org.freedesktop.DBus.Properties", "GetAll",
                                       {"org.kde.StatusNotifierItem"});
        return qdbus_cast<QVariantMap>(desktop.reply(call).arguments().value(0));
    }
    QDBusPendingCall menu(const char* member, const QVariantList& arguments) {
        return desktop.call(item, "/StatusNotifierMenu", "com.canonical.dbusmenu", member, arguments);
    }
    /// Opens the menu, and gives its texts and their ids.
    QStringList open() {
        EXPECT_TRUE(desktop.reply(menu("AboutToShow", {0})).arguments().value(0).toBool());
        const QDBusMessage layout = desktop.reply(menu("GetLayout", {0, -1, QStringList()}));
        EXPECT_EQ(layout.signature(), "u(ia{sv}av)");
        ids.clear();
        return read(qdbus_cast<TrayMenuNode>(layout.arguments().value(1)));
    }
    QStringList read(const TrayMenuNode& node) {
        QStringList texts;
        for (const TrayMenuNode& child : node.children) {
            const QString text = child.properties["label"].toString();
            ids[text] = child.id;
            texts << text << read(child);
        }
        return texts;
    }
    QDBusPendingCall click(int id) {
        const QList<TrayMenuEvent> clicks{{id, "clicked", QDBusVariant(""), 0}};
        return menu("EventGroup", {QVariant::fromValue(clicks)});
    }
    void choose(int id) { desktop.reply(click(id)); }

    QString item;
    QMap<QString, int> ids;
};

TEST_F(TrayTest, theTrayHasTheTimerAndAMenuWhileThereIsAHost) {
    addTask("Write the_offer");
    host();
    const QVariantMap idle = properties();
    EXPECT_EQ(idle["Title"].toString(), "Quillorn");
    EXPECT_EQ(qvariant_cast<QDBusArgument>(idle["IconPixmap"]).currentSignature(), "a(iiay)");
    EXPECT_EQ(qvariant_cast<QDBusArgument>(idle["ToolTip"]).currentSignature(), "(sa(iiay)ss)");
    EXPECT_EQ(open(), QStringList({"Start Timer", "Write the__offer", "", "Quick Add…", "Show Window", "", "Quit"}));
    const int start = ids["Write the__offer"];
    choose(start);
    EXPECT_EQ(properties()["Title"].toString(), "Quillorn — Write the_offer");
    EXPECT_EQ(qdbus_cast<TrayToolTip>(properties()["ToolTip"]).text, "Write the_offer — 0h 0m");
    const QStringList running = open();
    EXPECT_TRUE(running.value(0).startsWith("Write the__offer — Started "));
    EXPECT_EQ(running.mid(1), QStringList({"Stop timer", "", "Quick Add…", "Show Window", "", "Quit"}));
    choose(ids["Stop timer"]);
    choose(start); // of a menu that has long gone
    EXPECT_FALSE(shell().world().app().timerService().isRunning());

    desktop.bus.unregisterService(watcher);
    EXPECT_TRUE(QTest::qWaitFor([&] { return properties().isEmpty(); }));
    item.clear();
    desktop.bus.registerService(watcher);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !item.isEmpty(); }));
}

TEST_F(TrayTest, theProgramOutlivesItsWindowInTheTrayAlone) {
    host();
    open();
    QTimer limit;
    limit.setSingleShot(true);
    limit.callOnTimeout(&QCoreApplication::quit);
    const auto closeAndRun = [&] {
        limit.start(10'000);
        QTimer::singleShot(0, &shell().window(), [&] { shell().window().close(); });
        QCoreApplication::exec();
    };
    closeAndRun();

    settings().set(setting("trayKeepsRunning"), true);
    shell().open({});
    bool cameBack = false;
    QObject::connect(&shell().window(), &QWindow::visibleChanged, &limit, [&](bool isVisible) {
        cameBack |= isVisible;
        isVisible ? click(ids["Quit"])
                  : desktop.call(item, "/StatusNotifierItem", "org.kde.StatusNotifierItem", "Activate", {0, 0});
    });
    closeAndRun();
    EXPECT_TRUE(cameBack && limit.isActive());
}

TEST_F(AroundTest, theDesktopGivesAKeyAndAsksOnce) {
    struct Case {
        const char* name;
        bool hasInterface, isKnown, isRefused;
        const char* help;
    };
    const Case cases[] = {
        {"without it", false, false, false, DesktopSettingsView::shortcutByHand.data()},
        {"given", true, false, false, "The key is Ctrl+Alt+A."},
        {"remembered", true, true, false, "The key is Ctrl+Alt+A."},
        {"refused", true, false, true, "The desktop asks for the key."},
    };
    qDBusRegisterMetaType<PortalKey>();
    qDBusRegisterMetaType<QList<PortalKey>>();
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        const auto respond = [&](uint code, const QVariantMap& results) {
            return [this, code, results](const QDBusMessage& call) {
                const auto options = qdbus_cast<QVariantMap>(call.arguments().last());
                const QString path = QString("%1/request/us/%2").arg(portalPath, options["handle_token"].toString());
                desktop.signal(path, "org.freedesktop.portal.Request", "Response", {code, results});
                return QVariantList{QVariant::fromValue(QDBusObjectPath(path))};
            };
        };
        const QList<PortalKey> keys{{"quick-add", {{"trigger_description", "Ctrl+Alt+A"}}}};
        const QVariantMap known{{"shortcuts", QVariant::fromValue(keys)}};
        desktop.answers.clear();
        desktop.calls.clear();
        if (each.hasInterface)
            desktop.says("Get", {QVariant::fromValue(QDBusVariant(1U))});
        desktop.answers["CreateSession"] = respond(0, {{"session_handle", "/session"}});
        desktop.answers["ListShortcuts"] = respond(0, each.isKnown ? known : QVariantMap());
        desktop.answers["BindShortcuts"] = respond(each.isRefused, each.isRefused ? QVariantMap() : known);
        settings().set(setting("quickAddShortcut"), true);
        desktop.bus.registerService(portal);
        EXPECT_TRUE(QTest::qWaitFor([&] {
            return pane().shortcutHelp() == each.help && pane().hasShortcut() == each.hasInterface &&
                   pane().wantsShortcut() != each.isRefused;
        })) << pane().shortcutHelp().toStdString();
        EXPECT_EQ(desktop.calls["BindShortcuts"].signature(),
                  each.hasInterface && !each.isKnown ? "oa(sa{sv})sa{sv}" : "");
        desktop.signal(portalPath, "org.freedesktop.portal.GlobalShortcuts", "Activated",
                       {QVariant::fromValue(QDBusObjectPath("/session")), "quick-add", qulonglong(1), QVariantMap()});
        askServices(); // which comes behind the key
        EXPECT_EQ(shell().desk()->quickAdd() != nullptr, each.hasInterface && !each.isRefused);
        shell().desk()->closeQuickAdd();
        desktop.bus.unregisterService(portal);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !pane().hasShortcut(); }));
        m_shell.reset();
    }
}

TEST_F(AroundTest, notificationsLeadToTheirTask) {
    desktop.says("GetCapabilities", {QStringList{"actions"}});
    desktop.says("Notify", {7U});
    desktop.bus.registerService(notifications);
    ProjectTask& task = addTask("Write the offer");
    shell().window().hide();
    // Those of the service itself come at full minutes.
    const std::vector<NotificationRequest::Action> actions{{"done", "Done"}, {"default", "Open"}};
    shell().world().machine()->notifications.add(
        {"due", "Task Due", "Write the offer", {{"taskId", task.id().string()}}, actions, Date()});
    ASSERT_TRUE(QTest::qWaitFor([&] { return desktop.calls.contains("Notify"); }));
    const auto click = [&](const char* action, const char* token) {
        desktop.signal("/org/freedesktop/Notifications", notifications, "ActivationToken", {7U, token});
        desktop.signal("/org/freedesktop/Notifications", notifications, "ActionInvoked", {7U, action});
    };
    QString offered;
    const QObject listener;
    QObject::connect(&shell().window(), &QWindow::visibleChanged, &listener,
                     [&] { offered = ActivationToken::ofStart(); });
    click("default", "first");
    EXPECT_TRUE(QTest::qWaitFor([&] { return shell().window().isVisible(); }));
    EXPECT_EQ(offered + ActivationToken::ofStart(), "first");
    EXPECT_EQ(shell().desk()->selectedTask().toStdString(), task.id().string());
    click("done", "");
    EXPECT_TRUE(QTest::qWaitFor([&] { return task.isCompleted(); }));

    // As in a server, beside which a window runs.
    NotificationService& service = shell().world().app().machineServices()->notificationService();
    service.onOpen = nullptr;
    const NotificationsIntoWindow intoWindow(*shell().world().sessionBus(), service);
    desktop.says("Open", {});
    desktop.bus.registerService(windowbus::name);
    ASSERT_TRUE(QTest::qWaitFor([&] { return service.onOpen != nullptr; }));
    click("default", "second");
    ASSERT_TRUE(QTest::qWaitFor([&] { return desktop.calls.contains("Open"); }));
    EXPECT_EQ(qdbus_cast<QVariantMap>(desktop.calls["Open"].arguments().value(1))["activation-token"], "second");
    EXPECT_EQ(desktop.calls["Open"].arguments().value(0).toStringList(),
              QStringList(toQString("quillorn://task/" + task.id().string())));
    desktop.bus.unregisterService(windowbus::name);
    EXPECT_TRUE(QTest::qWaitFor([&] { return service.onOpen == nullptr; }));
}

TEST_F(AroundTest, aSecondStartHandsOverWhatItWasGiven) {
    desktop.says("ActivateAction", {});
    ASSERT_TRUE(desktop.bus.registerService(windowbus::name));
    std::optional<SingleInstance::Outcome> outcome;
    std::thread second([&] {
        const auto claimed = SingleInstance().claim({.quickAdd = true, .token = "1a"});
        QMetaObject::invokeMethod(qApp, [&, claimed] { outcome = claimed; });
    });
    EXPECT_TRUE(QTest::qWaitFor([&] { return outcome.has_value(); }));
    second.join();
    EXPECT_EQ(outcome, SingleInstance::Outcome::handedOver);

    desktop.bus.unregisterService(windowbus::name);
    SingleInstance first;
    EXPECT_EQ(first.claim({}), SingleInstance::Outcome::first);
    QStringList tokens;
    QObject::connect(&first, &SingleInstance::opened, [&](const auto&, const auto& token) { tokens << token; });
    QObject::connect(&first, &SingleInstance::quickAddWanted, [&](const QString& token) { tokens << token; });
    const QStringList addresses{"quillorn://a", "quillorn://b"};
    desktop.reply(desktop.call(windowbus::name, windowbus::path, windowbus::interface, "Open",
                               {addresses, QVariantMap{{"desktop-startup-id", "1b"}}}));
    const QVariantList handedOver = desktop.calls["ActivateAction"].arguments();
    desktop.reply(desktop.call(windowbus::name, windowbus::path, windowbus::interface, "ActivateAction",
                               {handedOver[0], handedOver[1], qdbus_cast<QVariantMap>(handedOver[2])}));
    EXPECT_EQ(tokens, QStringList({"1b", "", "1a"}));
    QDBusConnection::sessionBus().unregisterService(windowbus::name);
}

TEST_F(AroundTest, otherProgramsFindTheServicesOnce) {
    ASSERT_TRUE(desktop.bus.registerService(services)); // as `quillorn serve` does
    addTask("Call the printer");
    EXPECT_EQ(servicesOwner(), desktop.bus.baseService());
    desktop.bus.unregisterService(services);
    ASSERT_TRUE(QTest::qWaitFor([&] { return servicesOwner() != desktop.bus.baseService(); }));
    askServices();
}

} // namespace
} // namespace quillorn
