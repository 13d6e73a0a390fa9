#pragma once

#include "Desktop/ListModel.h"
#include "Desktop/Screen.h"
#include "Views/TodaySummaryView.h"

namespace quillorn {

class TodaySummaryScreen final : public Screen {
    Q_OBJECT
    Q_PROPERTY(QAbstractItemModel* completed READ completed CONSTANT)
    Q_PROPERTY(QAbstractItemModel* notes READ notes CONSTANT)
    Q_PROPERTY(QVariantList tiles READ tiles NOTIFY changed)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)
    /// Whether it is to be updated each second while it is seen.
    Q_PROPERTY(bool hasRunning READ hasRunning NOTIFY changed)
    Q_PROPERTY(QVariantMap words READ words CONSTANT)

  public:
    TodaySummaryScreen(MainContext& main, const Clock& clock, const Calendar& calendar);

    QAbstractItemModel* completed() { return &m_completed; }
    QAbstractItemModel* notes() { return &m_notes; }
    QVariantList tiles() const;
    bool isEmpty() const { return m_view.isEmpty(); }
    bool hasRunning() const { return m_view.hasRunning(); }
    static QVariantMap words();

    /// The present moment has moved on.
    Q_INVOKABLE void update() { m_view.update(); }

  private:
    TodaySummaryView m_view;
    ListModel<TodaySummaryView::TaskRow> m_completed;
    ListModel<TodaySummaryView::NoteRow> m_notes;
    Observation m_changes;
};

} // namespace quillorn
