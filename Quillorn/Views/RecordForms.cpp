#include "Views/RecordForms.h"

#include "Models/Note.h"
#include "Models/ProjectOrder.h"
#include "Models/Tag.h"
#include "Records/ClientRequests.h"
#include "Records/Edits.h"
#include "Records/Lookup.h"
#include "Records/NoteRequests.h"
#include "Records/ProjectRequests.h"
#include "Records/TagRequests.h"
#include "Store/MainContext.h"

namespace quillorn {

namespace {

template <class Record>
std::optional<UUID> idOf(const Record* record) {
    return record != nullptr ? std::optional(record->id()) : std::nullopt;
}

/// A description that nobody has given stays absent in a new record.
std::optional<std::string> textOrNone(const std::string& text) {
    return text.empty() ? std::nullopt : std::optional(text);
}

CreateClientRequest requestOf(const ClientValues& values) {
    CreateClientRequest request;
    request.name = values.name;
    request.description = textOrNone(values.description);
    request.color = values.color;
    request.icon = values.icon;
    return request;
}

CreateProjectRequest requestOf(const ProjectValues& values) {
    CreateProjectRequest request;
    request.name = values.name;
    request.description = textOrNone(values.description);
    request.color = values.color;
    request.clientId = values.client;
    return request;
}

CreateTagRequest requestOf(const TagValues& values) {
    CreateTagRequest request;
    request.name = values.name;
    request.color = values.color;
    return request;
}

} // namespace

ClientForm::ClientForm(const ViewEnvironment& environment) : RecordForm(environment, "Client", std::nullopt, {}) {}

ClientForm::ClientForm(const ViewEnvironment& environment, const Client& client)
    : RecordForm(environment, "Client", client.id(),
                 {client.name(), client.clientDescription().value_or(""), client.color(), client.icon()}) {}

std::vector<std::string> ClientForm::faults() const {
    return requestOf(values()).faults();
}

UUID ClientForm::write(ModelContext& context, Date now) {
    if (isNew())
        return createClient(context, requestOf(values()), now).id();
    auto& client = findOrThrow<Client>(context, *record());
    UpdateClientRequest request;
    request.name = written(&ClientValues::name);
    request.description = written(&ClientValues::description);
    request.color = written(&ClientValues::color);
    request.icon = written(&ClientValues::icon);
    updateClient(context, client, request, now);
    return client.id();
}

ProjectForm::ProjectForm(const ViewEnvironment& environment, std::optional<UUID> client)
    : RecordForm(environment, "Project", std::nullopt, {.client = client}) {}

ProjectForm::ProjectForm(const ViewEnvironment& environment, const Project& project)
    : RecordForm(environment, "Project", project.id(),
                 {project.name(), project.projectDescription().value_or(""), project.color(), idOf(project.client())}) {
}

std::vector<std::string> ProjectForm::faults() const {
    return requestOf(values()).faults();
}

UUID ProjectForm::write(ModelContext& context, Date now) {
    if (isNew())
        return createProject(context, requestOf(values()), now).id();
    auto& project = findOrThrow<Project>(context, *record());
    UpdateProjectRequest request;
    request.name = written(&ProjectValues::name);
    request.description = written(&ProjectValues::description);
    request.color = written(&ProjectValues::color);
    if (isTouched(&ProjectValues::client))
        request.clientId = values().client;
    updateProject(context, project, request, now);
    if (isTouched(&ProjectValues::client) && !values().client && project.client() != nullptr)
        moveProjectToClient(context, project, nullptr); // for a request absent means to leave it
    return project.id();
}

GroupForm::GroupForm(const ViewEnvironment& environment, std::optional<UUID> client)
    : RecordForm(environment, "Group", std::nullopt, {}),
      m_client(client) {}

GroupForm::GroupForm(const ViewEnvironment& environment, const ProjectDivider& group)
    : RecordForm(environment, "Group", group.id(), {group.title()}) {}

UUID GroupForm::write(ModelContext& context, Date now) {
    if (!isNew()) {
        auto* group = context.find<ProjectDivider>(*record());
        if (group == nullptr)
            throw RecordNotFound("Group", *record());
        group->setTitle(values().title);
        return group->id();
    }
    const auto* client = findLinked<Client>(context, m_client);
    auto& group = context.insert<ProjectDivider>(
        ProjectDivider::Arguments{
            .title = values().title, .clientID = m_client, .sortOrder = nextProjectOrder(client, context)},
        now);
    return group.id();
}

NoteForm::NoteForm(const ViewEnvironment& environment, std::optional<UUID> project)
    : RecordForm(environment, "Note", std::nullopt, {.project = project}) {}

NoteForm::NoteForm(const ViewEnvironment& environment, const Note& note)
    : RecordForm(environment, "Note", note.id(),
                 {note.title(), note.content(), idOf(note.project()), note.isPinned()}) {}

UUID NoteForm::write(ModelContext& context, Date now) {
    if (isNew()) {
        CreateNoteRequest request;
        request.title = values().title;
        request.content = values().content;
        request.projectId = values().project;
        auto& note = createNote(context, request, now);
        note.setPinned(values().isPinned);
        return note.id();
    }
    auto& note = findOrThrow<Note>(context, *record());
    UpdateNoteRequest request;
    request.title = written(&NoteValues::title);
    request.content = written(&NoteValues::content);
    request.isPinned = written(&NoteValues::isPinned);
    if (isTouched(&NoteValues::project))
        request.projectId = values().project;
    updateNote(context, note, request, now);
    if (isTouched(&NoteValues::project) && !values().project)
        note.setProject(nullptr);
    return note.id();
}

TagForm::TagForm(const ViewEnvironment& environment) : RecordForm(environment, "Tag", std::nullopt, {}) {}

TagForm::TagForm(const ViewEnvironment& environment, const Tag& tag)
    : RecordForm(environment, "Tag", tag.id(), {tag.name(), tag.color()}) {}

std::vector<std::string> TagForm::faults() const {
    return requestOf(values()).faults();
}

UUID TagForm::write(ModelContext& context, Date now) {
    if (isNew())
        return createTag(context, requestOf(values()), now).id();
    auto& tag = findOrThrow<Tag>(context, *record());
    UpdateTagRequest request;
    request.name = written(&TagValues::name);
    request.color = written(&TagValues::color);
    updateTag(context, tag, request, now);
    return tag.id();
}

} // namespace quillorn
