#pragma once

#include "Desktop/ListModel.h"
#include "Desktop/Screen.h"
#include "Views/TimeDashboard.h"

namespace quillorn {

/// The time of everything, of a client, a project or a task.
class TimeDashboardScreen final : public Screen {
    Q_OBJECT
    Q_PROPERTY(QAbstractItemModel* recent READ recent CONSTANT)
    Q_PROPERTY(QVariantList figures READ figures NOTIFY changed)
    Q_PROPERTY(QVariantList days READ days NOTIFY changed)
    Q_PROPERTY(QVariantList byProject READ byProject NOTIFY changed)
    Q_PROPERTY(QVariantList byTask READ byTask NOTIFY changed)
    /// Whether it is to be updated each second while it is seen.
    Q_PROPERTY(bool hasRunning READ hasRunning NOTIFY changed)
    Q_PROPERTY(QVariantMap words READ words CONSTANT)

  public:
    TimeDashboardScreen(MainContext& main, const Clock& clock, const Calendar& calendar, const TimeScope& scope);

    QAbstractItemModel* recent() { return &m_model; }
    QVariantList figures() const;
    QVariantList days() const;
    QVariantList byProject() const { return shares(m_view.byProject()); }
    QVariantList byTask() const { return shares(m_view.byTask()); }
    bool hasRunning() const { return m_view.stats().hasRunning(); }
    static QVariantMap words();

    Q_INVOKABLE void update() { m_view.update(); }
    Q_INVOKABLE QVariantMap deletion(const QString& entry) const;
    Q_INVOKABLE void remove(const QString& entry);

  private:
    static QVariantList shares(const std::vector<TimeDashboard::ShareRow>& rows);

    TimeDashboard m_view;
    ListModel<TimeDashboard::RecentRow> m_model;
    Observation m_changes;
};

} // namespace quillorn
