#include "Desktop/Shell.h"

#include "App/MachineServices.h"
#include "Desktop/ActivationToken.h"
#include "Models/Settings.h"
#include "Platform/Process.h"
#include "Views/MenuCommands.h"

#include <QFont>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <QQmlContext>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QStyleHints>
#include <QtQml/QQmlExtensionPlugin>
#include <cstdlib>
#include <stdexcept>

Q_IMPORT_QML_PLUGIN(Quillorn_DesktopPlugin)
Q_IMPORT_QML_PLUGIN(QuillornStylePlugin)

namespace quillorn {

namespace {

/// {message, folder} where the store can't be opened; else empty.
QVariantMap recoveryOf(QuillornApp& app) {
    if (app.runMode() != RunMode::fallback)
        return {};
    const StoreRecovery recovery = app.storeRecovery();
    return {{"message", toVariant(recovery.message)}, {"folder", toVariant(recovery.backupsFolder.string())}};
}

ViewEnvironment environmentOf(AppSession& world, MainQueue& queue, EditHistory& history) {
    QuillornApp& app = world.app();
    return {app.mainStore(),
            queue,
            history,
            app.timerService(),
            app.machineServices()->dayChangeObserver(),
            world.settings(),
            world.clock(),
            world.calendar(),
            world.text()};
}

} // namespace

void Shell::prepare() {
    configureMemory();
    // The software renderer starts in half the time and half the memory; whoever wants another one says so by Qt's own
    // variables. Under Wayland the library for the graphics card isn't even loaded then.
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND") && !qEnvironmentVariableIsSet("QSG_RHI_BACKEND")) {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
        if (!qEnvironmentVariableIsSet("QT_WAYLAND_CLIENT_BUFFER_INTEGRATION")) {
            qputenv("QT_WAYLAND_CLIENT_BUFFER_INTEGRATION", "none");
            QLoggingCategory::setFilterRules("qt.qpa.wayland.warning=false"); // that there is none of that name
        }
    }
    QQuickStyle::setStyle("QuillornStyle");
    QQuickStyle::setFallbackStyle("Basic");
}

Shell::Shell(const ProcessInfo& process, Appearance::Scheme scheme, SystemLog& log, const SampleStore* sample,
             Start start)
    : m_mainQueue(log),
      m_world(m_mainQueue, log, process, QuillornApp::Schedules::run, QUILLORN_VERSION,
              sample != nullptr ? sample->paths() : systemPaths()),
      m_look(scheme),
      m_wasOpened(start == Start::window) {
    if (m_world.app().runMode() != RunMode::fallback) {
        if (sample != nullptr)
            SampleStore::fill(m_world);
        m_history.emplace(m_world.app().mainStore(), m_world.app().timerService(), m_world.clock());
        if (sample == nullptr && m_world.app().runMode() == RunMode::normal)
            surround();
        m_desk.emplace(m_world, environmentOf(m_world, m_mainQueue, *m_history), log,
                       m_around ? &m_around->shortcut() : nullptr);
        startServices();
    }
    QGuiApplication::setFont(QFont("Inter"));
    // One that blinks would have the window drawn twice a second for as long as a field has the focus.
    QGuiApplication::styleHints()->setCursorFlashTime(0);
    m_engine.setNetworkAccessManagerFactory(&m_network);
    m_engine.addImportPath("qrc:/qml");
    QQmlContext& context = *m_engine.rootContext();
    context.setContextProperty("Look", &m_look);
    context.setContextProperty("Recovery", recoveryOf(m_world.app()));
    context.setContextProperty("Desk", desk());
    m_engine.setInitialProperties({{"visible", start == Start::window}});
    m_engine.load("qrc:/qml/Quillorn/Desktop/Main.qml");
    if (m_engine.rootObjects().isEmpty())
        throw std::runtime_error("the window could not be made");
    QGuiApplication::setQuitOnLastWindowClosed(false);
    QObject::connect(qApp, &QGuiApplication::lastWindowClosed, &m_engine, [this] { lastWindowClosed(); });
    if (start == Start::quickAdd)
        quickAdd();
}

void Shell::surround() {
    m_around.emplace(m_world, m_mainQueue,
                     TrayView::Actions{.quickAdd = [this] { quickAdd(); },
                                       .show = [this] { open({}); },
                                       .quit = [] { QCoreApplication::quit(); },
                                       .fail = [this](const char* words) { Q_EMIT m_desk->failed(words); }});
}

void Shell::lastWindowClosed() {
    if (!m_wasOpened || !m_around || !m_around->keepRunning())
        QCoreApplication::quit();
}

void Shell::startServices() {
    QuillornApp& app = m_world.app();
    app.onStoreLost = [] { QCoreApplication::exit(EXIT_FAILURE); }; // the log says why
    app.machineServices()->notificationService().onOpen = [this](const UUID& task, const std::string& token) {
        open(toQString("quillorn://task/" + task.string()), toQString(token));
    };
    if (app.runMode() == RunMode::normal && Settings(m_world.settings()).boolean(setting("apiAutoStart")))
        app.startAPIServer(APIServerOptions::fromSettings(m_world.settings()));
}

QQuickWindow& Shell::window() {
    return *qobject_cast<QQuickWindow*>(m_engine.rootObjects().first());
}

void Shell::open(const QString& address, const QString& token) {
    const ActivationToken offered(token);
    m_wasOpened = true;
    window().show();
    window().raise();
    window().requestActivate();
    if (m_desk)
        m_desk->open(address);
}

void Shell::quickAdd(const QString& token) {
    const ActivationToken offered(token);
    if (m_desk)
        m_desk->command(toQString(commands::quickAdd));
    else
        open({});
}

} // namespace quillorn
