#include "Desktop/FormScreen.h"

#include "Models/Client.h"
#include "Models/Note.h"
#include "Models/Project.h"
#include "Models/ProjectDivider.h"
#include "Models/ProjectTask.h"
#include "Models/Tag.h"
#include "Store/MainContext.h"

namespace quillorn {

namespace {

void take(std::string& member, const QVariant& value) {
    member = value.toString().toStdString();
}
void take(std::optional<UUID>& member, const QVariant& value) {
    member = toId(value.toString());
}
template <typename Enum>
    requires std::is_enum_v<Enum>
void take(Enum& member, const QVariant& value) {
    member = enumFromRaw<Enum>(value.toInt()).value_or(member);
}

} // namespace

template <typename Form, typename Values, typename Value>
void FormScreen::add(const char* name, Form& form, Value Values::* member) {
    m_fields.push_back({name, [&form, member] { return toVariant(form.values().*member); },
                        [&form, member](const QVariant& value) {
                            Value next = form.values().*member;
                            take(next, value);
                            form.set(member, std::move(next));
                        }});
}

FormScreen::FormScreen(const ViewEnvironment& environment, QString kind, std::unique_ptr<RecordFormBase> form)
    : m_environment(environment),
      m_kind(std::move(kind)),
      m_form(std::move(form)),
      m_changes(m_form->observe(telling())) {
    if (auto* client = dynamic_cast<ClientForm*>(m_form.get())) {
        add("name", *client, &ClientValues::name);
        add("description", *client, &ClientValues::description);
        add("color", *client, &ClientValues::color);
    } else if (auto* project = dynamic_cast<ProjectForm*>(m_form.get())) {
        add("name", *project, &ProjectValues::name);
        add("description", *project, &ProjectValues::description);
        add("color", *project, &ProjectValues::color);
        add("client", *project, &ProjectValues::client);
    } else if (auto* group = dynamic_cast<GroupForm*>(m_form.get())) {
        add("name", *group, &GroupValues::title);
    } else if (auto* note = dynamic_cast<NoteForm*>(m_form.get())) {
        add("name", *note, &NoteValues::title);
        add("description", *note, &NoteValues::content);
        add("project", *note, &NoteValues::project);
    } else if (auto* tag = dynamic_cast<TagForm*>(m_form.get())) {
        add("name", *tag, &TagValues::name);
        add("color", *tag, &TagValues::color);
    } else if (auto* task = dynamic_cast<TaskForm*>(m_form.get())) {
        m_task = task;
        add("name", *task, &TaskValues::title);
        add("description", *task, &TaskValues::description);
        add("priority", *task, &TaskValues::priority);
        add("status", *task, &TaskValues::status);
        add("project", *task, &TaskValues::project);
    }
}

std::unique_ptr<FormScreen> FormScreen::forNew(const ViewEnvironment& environment, const QString& kind,
                                               const Start& start) {
    std::unique_ptr<RecordFormBase> form;
    if (kind == "client")
        form = std::make_unique<ClientForm>(environment);
    else if (kind == "project")
        form = std::make_unique<ProjectForm>(environment, start.client);
    else if (kind == "group")
        form = std::make_unique<GroupForm>(environment, start.client);
    else if (kind == "note")
        form = std::make_unique<NoteForm>(environment, start.project);
    else if (kind == "tag")
        form = std::make_unique<TagForm>(environment);
    else
        form = std::make_unique<TaskForm>(environment, TaskForm::Suggestion{start.project, start.parent, start.tag});
    return std::unique_ptr<FormScreen>(new FormScreen(environment, kind, std::move(form)));
}

std::unique_ptr<FormScreen> FormScreen::forRecord(const ViewEnvironment& environment, const QString& kind,
                                                  const UUID& record) {
    ModelContext& context = environment.main.context();
    std::unique_ptr<RecordFormBase> form;
    if (const Client* client = kind == "client" ? context.find<Client>(record) : nullptr)
        form = std::make_unique<ClientForm>(environment, *client);
    else if (const Project* project = kind == "project" ? context.find<Project>(record) : nullptr)
        form = std::make_unique<ProjectForm>(environment, *project);
    else if (const Tag* tag = kind == "tag" ? context.find<Tag>(record) : nullptr)
        form = std::make_unique<TagForm>(environment, *tag);
    if (!form)
        return nullptr;
    return std::unique_ptr<FormScreen>(new FormScreen(environment, kind, std::move(form)));
}

QVariantMap FormScreen::values() const {
    QVariantMap map;
    for (const Field& field : m_fields)
        map.insert(field.name, field.value());
    if (m_task != nullptr) {
        QStringList chosen;
        for (const UUID& tag : m_task->values().tags)
            chosen.append(toQString(tag.string()));
        map.insert("tags", chosen);
    }
    return map;
}

QString FormScreen::problem() const {
    if (!m_form->error().empty())
        return toQString(m_form->error());
    const std::vector<std::string> faults = m_form->faults();
    return m_isTouched && !faults.empty() ? toQString(faults.front()) : QString();
}

QVariantList FormScreen::clients() const {
    const auto* project = dynamic_cast<const ProjectForm*>(m_form.get());
    return project != nullptr ? toList(project->clients()) : QVariantList();
}

QVariantList FormScreen::projects() const {
    if (m_task != nullptr)
        return toList(m_task->projects());
    const auto* note = dynamic_cast<const NoteForm*>(m_form.get());
    return note != nullptr ? toList(note->projects()) : QVariantList();
}

QVariantList FormScreen::tags() const {
    return m_task != nullptr ? toList(m_task->tags()) : QVariantList();
}

QVariantList FormScreen::colors() {
    QVariantList all;
    for (std::size_t place = 0; place < formColors.size(); ++place)
        all.append(QVariantMap{{"value", toVariant(formColors[place])}, {"name", toVariant(formColorNames[place])}});
    return all;
}

void FormScreen::set(const QString& name, const QVariant& value) {
    m_isTouched = true;
    for (const Field& field : m_fields)
        if (name == field.name)
            field.set(value);
}

bool FormScreen::setDue(const QString& words) {
    return m_task != nullptr && m_task->setDueText(words.toStdString());
}

void FormScreen::toggleTag(const QString& tag) {
    if (const auto id = toId(tag); id && m_task != nullptr)
        m_task->toggleTag(*id);
}

QString FormScreen::save() {
    m_isTouched = true;
    const std::optional<UUID> saved = m_form->save();
    Q_EMIT changed();
    return saved ? toQString(saved->string()) : QString();
}

} // namespace quillorn
