#pragma once

#include "Desktop/Screen.h"
#include "Desktop/Values.h"
#include "Views/RecordForms.h"
#include "Views/TaskForm.h"

#include <memory>

namespace quillorn {

/// A form in which a record is made or changed. Its fields are known by name.
class FormScreen final : public Screen {
    Q_OBJECT
    /// "client", "project", "group", "task", "note" or "tag".
    Q_PROPERTY(QString kind READ kind CONSTANT)
    Q_PROPERTY(QString windowTitle READ windowTitle CONSTANT)
    Q_PROPERTY(QString namePrompt READ namePrompt CONSTANT)
    Q_PROPERTY(QString textPrompt READ textPrompt CONSTANT)
    Q_PROPERTY(QVariantMap values READ values NOTIFY changed)
    Q_PROPERTY(bool canSave READ canSave NOTIFY changed)
    Q_PROPERTY(QString problem READ problem NOTIFY changed)
    Q_PROPERTY(QVariantList clients READ clients NOTIFY changed)
    Q_PROPERTY(QVariantList projects READ projects NOTIFY changed)
    Q_PROPERTY(QVariantList tags READ tags CONSTANT)
    Q_PROPERTY(QVariantList colors READ colors CONSTANT)

  public:
    /// What a form begins with; what doesn't fit its kind is passed over.
    struct Start {
        std::optional<UUID> client{};
        std::optional<UUID> project{};
        std::optional<UUID> tag{};
        std::optional<UUID> parent{};
    };
    /// For a new record.
    static std::unique_ptr<FormScreen> forNew(const ViewEnvironment& environment, const QString& kind,
                                              const Start& start);
    /// For a record that there is; null where it is gone.
    static std::unique_ptr<FormScreen> forRecord(const ViewEnvironment& environment, const QString& kind,
                                                 const UUID& record);

    QString kind() const { return m_kind; }
    QString windowTitle() const { return toQString(m_form->windowTitle()); }
    QString namePrompt() const { return toQString(m_form->namePrompt()); }
    QString textPrompt() const { return toQString(m_form->textPrompt()); }
    QVariantMap values() const;
    bool canSave() const { return m_form->canSave(); }
    /// What is wrong; not before something was entered.
    QString problem() const;
    QVariantList clients() const;
    QVariantList projects() const;
    QVariantList tags() const;
    /// {value, name}
    static QVariantList colors();

    Q_INVOKABLE void set(const QString& field, const QVariant& value);
    /// False where the words can't be read.
    Q_INVOKABLE bool setDue(const QString& words);
    Q_INVOKABLE void toggleTag(const QString& tag);
    /// The id of the record; empty where it could not be kept.
    Q_INVOKABLE QString save();

  private:
    struct Field {
        const char* name;
        std::function<QVariant()> value;
        std::function<void(const QVariant&)> set;
    };

    FormScreen(const ViewEnvironment& environment, QString kind, std::unique_ptr<RecordFormBase> form);
    template <typename Form, typename Values, typename Value>
    void add(const char* name, Form& form, Value Values::* member);

    ViewEnvironment m_environment;
    QString m_kind;
    std::unique_ptr<RecordFormBase> m_form;
    TaskForm* m_task = nullptr; // where it is one
    std::vector<Field> m_fields;
    bool m_isTouched = false;
    Observation m_changes;
};

} // namespace quillorn
