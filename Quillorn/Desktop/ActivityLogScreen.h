#pragma once

#include "Desktop/ListModel.h"
#include "Desktop/Screen.h"
#include "Views/ActivityLogView.h"
#include "Views/SceneStorage.h"

namespace quillorn {

class ActivityLogScreen final : public Screen {
    Q_OBJECT
    Q_PROPERTY(QAbstractItemModel* rows READ rows CONSTANT)
    Q_PROPERTY(QVariantList filters READ filters NOTIFY changed)
    Q_PROPERTY(QString filter READ filter WRITE setFilter NOTIFY changed)
    Q_PROPERTY(QVariantMap header READ header NOTIFY changed)
    Q_PROPERTY(bool hasMore READ hasMore NOTIFY changed)
    /// Whether it is to be updated each second while it is seen.
    Q_PROPERTY(bool hasRunning READ hasRunning NOTIFY changed)
    Q_PROPERTY(QVariantMap words READ words NOTIFY changed)

  public:
    ActivityLogScreen(MainContext& main, SceneStorage& scene, const Clock& clock, const Calendar& calendar,
                      const Text& text);

    QAbstractItemModel* rows() { return &m_model; }
    /// {id, name}; the first one is for all of them.
    QVariantList filters() const;
    QString filter() const { return toQString(m_view.clientFilterRaw()); }
    void setFilter(const QString& client);
    QVariantMap header() const;
    bool hasMore() const { return m_view.hasMore(); }
    bool hasRunning() const { return m_view.hasRunning(); }
    QVariantMap words() const;

    Q_INVOKABLE void showMore() { m_view.showMore(); }
    Q_INVOKABLE void update() { m_view.update(); }

  private:
    SceneStorage& m_scene;
    ActivityLogView m_view;
    ListModel<ActivityLogView::Row> m_model;
    Observation m_changes;
};

} // namespace quillorn
