#pragma once

#include "Desktop/Screen.h"
#include "Views/QuickAddView.h"

namespace quillorn {

/// The line in which a task is added, in a window of its own.
class QuickAddScreen final : public Screen {
    Q_OBJECT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY changed)
    Q_PROPERTY(QString notes READ notes WRITE setNotes NOTIFY changed)
    /// {symbol, text, tone}
    Q_PROPERTY(QVariantList chips READ chips NOTIFY changed)
    Q_PROPERTY(bool canAdd READ canAdd NOTIFY changed)
    Q_PROPERTY(QString problem READ problem NOTIFY changed)
    Q_PROPERTY(QVariantMap words READ words CONSTANT)

  public:
    explicit QuickAddScreen(const ViewEnvironment& environment);

    QString text() const { return toQString(m_view.text()); }
    void setText(const QString& text) { m_view.setText(text.toStdString()); }
    QString notes() const { return toQString(m_view.notes()); }
    void setNotes(const QString& notes) { m_view.setNotes(notes.toStdString()); }
    QVariantList chips() const;
    bool canAdd() const { return m_view.canAdd(); }
    QString problem() const { return toQString(m_view.error()); }
    static QVariantMap words();

    /// Whether the task was made.
    Q_INVOKABLE bool add();
    Q_INVOKABLE bool addAndStart();

  private:
    QuickAddView m_view;
    Observation m_changes;
};

} // namespace quillorn
