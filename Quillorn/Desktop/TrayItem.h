#pragma once

#include "App/WindowOnBus.h"
#include "Desktop/ActivationToken.h"
#include "Desktop/TrayMenu.h"

#include <QDBusObjectPath>
#include <QObject>

namespace quillorn {

/// The icon in the tray, org.kde.StatusNotifierItem, for as long as this object lives: the host of the tray is told of
/// it, and reads and calls it.
class TrayItem final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category)
    Q_PROPERTY(QString Id READ id)
    Q_PROPERTY(QString Title READ title)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(int WindowId READ windowId)
    Q_PROPERTY(QString IconName READ iconName)
    Q_PROPERTY(quillorn::TrayPixmaps IconPixmap READ iconPixmap)
    Q_PROPERTY(quillorn::TrayToolTip ToolTip READ toolTip)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu)
    Q_PROPERTY(QDBusObjectPath Menu READ menu)

  public:
    explicit TrayItem(const TimerToolbarView::Environment& environment, TrayView::Actions actions);
    ~TrayItem() override;
    TrayItem(const TrayItem&) = delete;
    TrayItem& operator=(const TrayItem&) = delete;

    static QString category() { return "ApplicationStatus"; }
    static QString id() { return windowbus::name; }
    QString title() const;
    static QString status() { return "Active"; }
    static int windowId() { return 0; }
    /// Hosts would look for it where a program that isn't installed has none; the images are always there.
    static QString iconName() { return {}; }
    const TrayPixmaps& iconPixmap() const { return m_icon; }
    TrayToolTip toolTip() const;
    static bool itemIsMenu() { return false; }
    static QDBusObjectPath menu() { return QDBusObjectPath("/StatusNotifierMenu"); }

  public Q_SLOTS:
    /// Comes before one of the next three.
    void ProvideXdgActivationToken(const QString& token) { ActivationToken::offer(token); }
    void Activate(int x, int y);
    void SecondaryActivate(int x, int y) { Activate(x, y); }
    void ContextMenu(int x, int y) { Activate(x, y); } // by hosts that draw no menu
    void Scroll(int, const QString&) {}

  Q_SIGNALS:
    void NewTitle();
    void NewToolTip();
    void NewIcon();
    void NewStatus(const QString& status);

  private:
    void changed();

    const TrayPixmaps m_icon;
    TrayView m_view;
    QString m_task;
    TrayMenu m_menu{m_view};
    Observation m_changes;
};

} // namespace quillorn
