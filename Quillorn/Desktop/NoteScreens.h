#pragma once

#include "Desktop/ListModel.h"
#include "Desktop/Screen.h"
#include "Desktop/Values.h"
#include "Views/NoteDetailView.h"
#include "Views/NoteListView.h"
#include "Views/SceneStorage.h"

namespace quillorn {

class NoteListScreen final : public Screen {
    Q_OBJECT
    Q_PROPERTY(QAbstractItemModel* rows READ rows CONSTANT)
    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY changed)
    Q_PROPERTY(QString searchPrompt READ searchPrompt CONSTANT)
    Q_PROPERTY(QString countText READ countText NOTIFY changed)
    Q_PROPERTY(QVariantMap emptyState READ emptyState NOTIFY changed)

  public:
    NoteListScreen(const ViewEnvironment& environment, NoteScope scope);

    QAbstractItemModel* rows() { return &m_model; }
    QString searchText() const { return toQString(m_view.searchText()); }
    void setSearchText(const QString& text) { m_view.setSearchText(text.toStdString()); }
    static QString searchPrompt() { return toQString(NoteListView::searchPrompt); }
    QString countText() const { return toQString(m_view.countText()); }
    QVariantMap emptyState() const { return toMap(m_view.emptyState()); }

    /// The id of the new note; empty where none could be made.
    Q_INVOKABLE QString add();
    Q_INVOKABLE void togglePin(const QString& note);
    Q_INVOKABLE QVariantMap deletion(const QString& note) const;
    Q_INVOKABLE void remove(const QString& note);

  private:
    NoteListView m_view;
    ListModel<NoteListView::Row> m_model;
    Observation m_changes;
};

class NoteScreen final : public Screen {
    Q_OBJECT
    Q_PROPERTY(QString noteId READ noteId CONSTANT)
    Q_PROPERTY(bool isGone READ isGone NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString content READ content NOTIFY changed)
    /// Somebody else has changed what is being edited.
    Q_PROPERTY(QString warning READ warning NOTIFY changed)
    Q_PROPERTY(bool isPreview READ isPreview WRITE setPreview NOTIFY changed)
    Q_PROPERTY(bool isPinned READ isPinned NOTIFY changed)
    Q_PROPERTY(QString pinButton READ pinButton NOTIFY changed)
    Q_PROPERTY(QString edited READ edited NOTIFY changed)
    Q_PROPERTY(QVariantList path READ path NOTIFY changed)
    Q_PROPERTY(QString error READ error NOTIFY changed)
    Q_PROPERTY(QVariantMap texts READ texts CONSTANT)

  public:
    NoteScreen(const ViewEnvironment& environment, SceneStorage& scene, const UUID& note);

    bool leaveAll() { return m_view.leaveAll(); }

    QString noteId() const { return toQString(m_view.id().string()); }
    bool isGone() const { return m_view.isGone(); }
    QString title() const { return toQString(m_view.field(NoteDetailView::Field::title).text()); }
    QString content() const { return toQString(m_view.field(NoteDetailView::Field::content).text()); }
    QString warning() const;
    bool isPreview() const { return m_view.isPreview(); }
    void setPreview(bool isPreview) { m_view.setPreview(isPreview); }
    bool isPinned() const { return m_view.isPinned(); }
    QString pinButton() const { return toQString(NoteDetailView::pinButton(m_view.isPinned())); }
    QString edited() const { return toQString(m_view.edited()); }
    QVariantList path() const { return toList(m_view.path()); }
    QString error() const { return toQString(m_view.error()); }
    static QVariantMap texts();

    Q_INVOKABLE void typeTitle(const QString& text) { m_view.type(NoteDetailView::Field::title, text.toStdString()); }
    Q_INVOKABLE void typeContent(const QString& text) {
        m_view.type(NoteDetailView::Field::content, text.toStdString());
    }
    Q_INVOKABLE void leave() { m_view.leaveAll(); }
    Q_INVOKABLE void revert();
    Q_INVOKABLE void togglePin() { m_view.togglePin(); }
    Q_INVOKABLE QVariantMap deletion() const { return toQuestion(m_view.deletion()); }
    Q_INVOKABLE void remove() { m_view.remove(); }

  private:
    NoteDetailView m_view;
    Observation m_changes;
};

} // namespace quillorn
