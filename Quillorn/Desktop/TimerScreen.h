#pragma once

#include "Desktop/Screen.h"
#include "Views/TimerToolbarView.h"

namespace quillorn {

/// The running timer in the toolbar.
class TimerScreen final : public Screen {
    Q_OBJECT
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString tone READ tone NOTIFY changed)
    Q_PROPERTY(QString clock READ clock NOTIFY changed)
    Q_PROPERTY(QString started READ started NOTIFY changed)
    Q_PROPERTY(QString task READ task NOTIFY changed)
    Q_PROPERTY(QVariantMap words READ words CONSTANT)

  public:
    explicit TimerScreen(const TimerToolbarView::Environment& environment)
        : m_view(environment),
          m_changes(m_view.observe(telling())) {}

    bool isRunning() const { return m_view.isRunning(); }
    QString title() const { return toQString(m_view.title()); }
    QString tone() const { return toQString(m_view.color()); }
    QString clock() const { return toQString(m_view.clock()); }
    QString started() const { return toQString(m_view.started()); }
    QString task() const { return m_view.task() ? toQString(m_view.task()->string()) : QString(); }
    static QVariantMap words();

    /// {id, title, subtitle, isActive} of the open tasks that fit.
    Q_INVOKABLE QVariantList choices(const QString& search) const;
    Q_INVOKABLE void start(const QString& task);
    Q_INVOKABLE void stop() {
        attempt([&] { m_view.stop(); });
    }
    /// {label, minutes}
    Q_INVOKABLE static QVariantList earlier();
    Q_INVOKABLE void startEarlier(int minutes) {
        attempt([&] { m_view.startEarlier(minutes); });
    }
    /// Why the start can't be moved there; empty when it was.
    Q_INVOKABLE QString adjust(const QString& when) {
        return toQString(m_view.adjust(when.toStdString()).value_or(""));
    }

  private:
    TimerToolbarView m_view;
    Observation m_changes;
};

} // namespace quillorn
