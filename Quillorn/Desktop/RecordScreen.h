#pragma once

#include "Desktop/ListModel.h"
#include "Desktop/Screen.h"
#include "Desktop/Values.h"
#include "Views/ClientDetailView.h"
#include "Views/ProjectDetailView.h"
#include "Views/SceneStorage.h"

namespace quillorn {

/// A column of a board.
class BoardColumn final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString label READ label CONSTANT)
    Q_PROPERTY(QString symbol READ symbol CONSTANT)
    Q_PROPERTY(int status READ status CONSTANT)
    Q_PROPERTY(int count READ count NOTIFY changed)
    Q_PROPERTY(QAbstractItemModel* cards READ cards CONSTANT)

  public:
    explicit BoardColumn(ProjectDetailView::Column& column);

    QString label() const { return toQString(m_column.label); }
    QString symbol() const { return toQString(m_column.symbol); }
    int status() const { return static_cast<int>(m_column.status); }
    int count() const { return static_cast<int>(m_column.count); }
    QAbstractItemModel* cards() { return &m_cards; }
    /// The row of the task's card; -1 where it is not here.
    Q_INVOKABLE int place(const QString& task) const;

  Q_SIGNALS:
    void changed();

  private:
    ProjectDetailView::Column& m_column;
    ListModel<ProjectDetailView::Card> m_cards;
};

/// A client or a project. Its tasks, time, notes and chat are screens of their own.
class RecordScreen final : public Screen {
    Q_OBJECT
    Q_PROPERTY(bool isProject READ isProject CONSTANT)
    Q_PROPERTY(bool isGone READ isGone NOTIFY changed)
    Q_PROPERTY(QString name READ name NOTIFY changed)
    Q_PROPERTY(QString description READ description NOTIFY changed)
    /// That what is being edited was changed by somebody else; empty otherwise.
    Q_PROPERTY(QString warning READ warning NOTIFY changed)
    Q_PROPERTY(QString tone READ tone NOTIFY changed)
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY changed)
    Q_PROPERTY(QVariantList tabs READ tabs CONSTANT)
    Q_PROPERTY(QString tab READ tab WRITE setTab NOTIFY changed)
    Q_PROPERTY(QVariantList figures READ figures NOTIFY changed)
    Q_PROPERTY(double progress READ progress NOTIFY changed)
    Q_PROPERTY(QVariantMap words READ words CONSTANT)
    Q_PROPERTY(bool isArchived READ isArchived NOTIFY changed)
    Q_PROPERTY(QString archiveButton READ archiveButton NOTIFY changed)
    Q_PROPERTY(QString error READ error NOTIFY changed)
    /// Of a client.
    Q_PROPERTY(QAbstractItemModel* projects READ projects CONSTANT)
    /// Of a project.
    Q_PROPERTY(QList<QObject*> board READ board CONSTANT)

  public:
    RecordScreen(const ViewEnvironment& environment, const AIEnvironment& ai, SceneStorage& scene, bool isProject,
                 const UUID& record);

    bool leaveAll() { return m_view->leaveAll(); }

    bool isProject() const { return m_project != nullptr; }
    bool isGone() const { return m_view->isGone(); }
    QString name() const { return toQString(m_view->field(NamedDetailView::Field::name).text()); }
    QString description() const { return toQString(m_view->field(NamedDetailView::Field::description).text()); }
    QString warning() const;
    QString tone() const { return toQString(m_view->color()); }
    QString subtitle() const { return toQString(m_view->subtitle()); }
    QVariantList tabs() const;
    QString tab() const { return toQString(m_view->tab()); }
    void setTab(const QString& tab);
    QVariantList figures() const;
    static QVariantMap words();
    double progress() const { return m_project != nullptr ? m_project->progress() : 0; }
    bool isArchived() const { return m_view->isArchived(); }
    QString archiveButton() const { return toQString(m_view->archiveButton()); }
    QString error() const { return toQString(m_view->error()); }
    QAbstractItemModel* projects() { return m_projects.get(); }
    QList<QObject*> board() const;

    Q_INVOKABLE void typeName(const QString& text) { m_view->type(NamedDetailView::Field::name, text.toStdString()); }
    Q_INVOKABLE void typeDescription(const QString& text) {
        m_view->type(NamedDetailView::Field::description, text.toStdString());
    }
    Q_INVOKABLE void revert();
    Q_INVOKABLE void leave() { m_view->leaveAll(); }
    Q_INVOKABLE void setColor(const QString& color) { m_view->setColor(color.toStdString()); }
    Q_INVOKABLE void toggleArchived() { m_view->setArchived(!m_view->isArchived()); }
    Q_INVOKABLE QVariantMap deletion() const { return toQuestion(m_view->deletion()); }
    Q_INVOKABLE void remove() { m_view->remove(); }
    Q_INVOKABLE void toggleGroup(const QString& group);
    Q_INVOKABLE void moveCard(const QString& task, int status);
    Q_INVOKABLE void addCard(const QString& title, int status);

  private:
    std::unique_ptr<ScopeDetailView> m_view;
    ClientDetailView* m_client = nullptr;
    ProjectDetailView* m_project = nullptr;
    std::unique_ptr<QAbstractItemModel> m_projects;
    std::vector<std::unique_ptr<BoardColumn>> m_board;
    Observation m_changes;
};

} // namespace quillorn
