#pragma once

#include "App/AppSession.h"
#include "Desktop/Appearance.h"
#include "Desktop/DesktopApp.h"
#include "Desktop/QtMainQueue.h"
#include "Desktop/RefusedNetwork.h"
#include "Desktop/SampleStore.h"
#include "Desktop/Surroundings.h"
#include "Views/EditHistory.h"

#include <QQmlApplicationEngine>
#include <optional>

class QQuickWindow;

namespace quillorn {

/// The application in its window, or the screen that stands in its place where the store can't be opened. Made behind
/// the toolkit's application object.
class Shell {
  public:
    /// To be called before that: how the window is drawn, and by which style.
    static void prepare();

    /// What shows first. Without the main window the program ends when the small one is closed.
    enum class Start { window, quickAdd };
    /// Works in the sample, which has to outlive it, where there is one. Throws what QuillornApp throws, and
    /// std::runtime_error where the window can't be made.
    Shell(const ProcessInfo& process, Appearance::Scheme scheme, SystemLog& log, const SampleStore* sample = nullptr,
          Start start = Start::window);
    Shell(const Shell&) = delete;
    Shell& operator=(const Shell&) = delete;

    QQuickWindow& window();
    AppSession& world() { return m_world; }
    /// Null where the store can't be opened.
    DesktopApp* desk() { return m_desk ? &*m_desk : nullptr; }

    /// Brings the window to the front, and shows the record of a quillorn:// address in it, if there is one. The
    /// desktop may want to see a token for it.
    void open(const QString& address, const QString& token = {});
    /// Shows the small window in which a task is added; the recovery screen where the store can't be opened.
    void quickAdd(const QString& token = {});

  private:
    /// The server where the settings want it, and what notifications and a lost store lead to.
    void startServices();
    void surround();
    void lastWindowClosed();

    QtMainQueue m_mainQueue;
    AppSession m_world;
    Appearance m_look;
    // Everything that is shown outlives the engine.
    RefusedNetwork m_network;
    std::optional<EditHistory> m_history;
    std::optional<Surroundings> m_around; // of the user's own store
    std::optional<DesktopApp> m_desk;
    /// Whether the main window has been there; else the small one is all that there is.
    bool m_wasOpened = false;
    QQmlApplicationEngine m_engine;
};

} // namespace quillorn
