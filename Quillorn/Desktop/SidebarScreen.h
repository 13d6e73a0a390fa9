#pragma once

#include "Desktop/ListModel.h"
#include "Desktop/Screen.h"
#include "Views/SidebarView.h"

namespace quillorn {

/// The sidebar. Rows are named by their place, which is looked up when something is done with them.
class SidebarScreen final : public Screen {
    Q_OBJECT
    Q_PROPERTY(QAbstractItemModel* rows READ rows CONSTANT)
    Q_PROPERTY(QVariantMap deletion READ deletion NOTIFY changed)
    Q_PROPERTY(QVariantMap sheet READ sheet NOTIFY changed)

  public:
    SidebarScreen(const ViewEnvironment& environment, SceneStorage& scene, NotificationCenter& notifications);

    QAbstractItemModel* rows() { return &m_model; }
    /// What to ask before what is at stake is deleted; empty when nothing is.
    QVariantMap deletion() const;
    /// {kind: "client" | "project" | "tag", record, client}; empty for none.
    QVariantMap sheet() const;

    /// What selecting the row selects; absent for a row that only does something.
    std::optional<SidebarItem> item(int row);

    Q_INVOKABLE void toggle(int row);
    /// Does what a row does that is no selection: folds a section, opens a form.
    Q_INVOKABLE void act(int row);
    /// {title, symbol, index}
    Q_INVOKABLE QVariantList menu(int row);
    Q_INVOKABLE void perform(int row, int index);
    Q_INVOKABLE void finishRenaming(const QString& title);
    Q_INVOKABLE void cancelRenaming() { m_view.cancelRenaming(); }
    /// Opens the title of a row for editing, or the form in which it stands; false for a row without one.
    Q_INVOKABLE bool rename(int row);
    /// One place up for -1, down for 1, in the manual order; false where there is none.
    Q_INVOKABLE bool move(int row, int by);
    /// 0 for nowhere, 1 into the target, 2 above it, 3 below it.
    Q_INVOKABLE int dropPlace(int dragged, int target);
    Q_INVOKABLE void drop(int dragged, int target);
    void dropTasks(const std::vector<UUID>& tasks, int row);
    Q_INVOKABLE void closeSheet() { m_view.closeSheet(); }
    Q_INVOKABLE void confirmDeletion();
    Q_INVOKABLE void cancelDeletion() { m_view.cancelDeletion(); }

  private:
    const SidebarRow* at(int row);

    SidebarView m_view;
    ListModel<SidebarRow> m_model;
    Observation m_changes;
};

} // namespace quillorn
