#pragma once

#include "Views/RecordForm.h"

namespace quillorn {

class Note;
class Project;
class ProjectDivider;
class Tag;

struct ClientValues {
    std::string name{};
    std::string description{};
    std::string color = defaultColor;
    std::string icon = "building.2.fill";

    friend bool operator==(const ClientValues&, const ClientValues&) = default;
};
class ClientForm final : public RecordForm<ClientValues> {
  public:
    explicit ClientForm(const ViewEnvironment& environment);
    ClientForm(const ViewEnvironment& environment, const Client& client);

    std::vector<std::string> faults() const override;

  protected:
    UUID write(ModelContext& context, Date now) override;
};

struct ProjectValues {
    std::string name{};
    std::string description{};
    std::string color = defaultColor;
    /// Absent for none.
    std::optional<UUID> client{};

    friend bool operator==(const ProjectValues&, const ProjectValues&) = default;
};
/// A new project, and one that changes its client, comes last among that client's.
class ProjectForm final : public RecordForm<ProjectValues> {
  public:
    ProjectForm(const ViewEnvironment& environment, std::optional<UUID> client);
    ProjectForm(const ViewEnvironment& environment, const Project& project);

    std::vector<FormChoice> clients() const { return clientChoices(environment(), values().client); }
    std::vector<std::string> faults() const override;

  protected:
    UUID write(ModelContext& context, Date now) override;
};

struct GroupValues {
    std::string title{};

    friend bool operator==(const GroupValues&, const GroupValues&) = default;
};
/// A group of the projects of a client, or of those without one. It may go without a name.
class GroupForm final : public RecordForm<GroupValues> {
  public:
    static constexpr std::string_view titlePrompt = "Group name";

    std::string_view namePrompt() const override { return titlePrompt; }

    GroupForm(const ViewEnvironment& environment, std::optional<UUID> client);
    GroupForm(const ViewEnvironment& environment, const ProjectDivider& group);

    std::vector<std::string> faults() const override { return {}; }

  protected:
    UUID write(ModelContext& context, Date now) override;

  private:
    std::optional<UUID> m_client;
};

struct NoteValues {
    std::string title{};
    std::string content{};
    std::optional<UUID> project{};
    bool isPinned = false;

    friend bool operator==(const NoteValues&, const NoteValues&) = default;
};
class NoteForm final : public RecordForm<NoteValues> {
  public:
    NoteForm(const ViewEnvironment& environment, std::optional<UUID> project);
    NoteForm(const ViewEnvironment& environment, const Note& note);

    std::vector<FormChoice> projects() const { return projectChoices(environment(), values().project); }
    std::string_view namePrompt() const override { return "Title"; }
    std::string_view textPrompt() const override { return "Write in Markdown"; }
    std::vector<std::string> faults() const override { return {}; }

  protected:
    UUID write(ModelContext& context, Date now) override;
};

struct TagValues {
    std::string name{};
    std::string color = defaultColor;

    friend bool operator==(const TagValues&, const TagValues&) = default;
};
class TagForm final : public RecordForm<TagValues> {
  public:
    explicit TagForm(const ViewEnvironment& environment);
    TagForm(const ViewEnvironment& environment, const Tag& tag);

    std::vector<std::string> faults() const override;

  protected:
    UUID write(ModelContext& context, Date now) override;
};

} // namespace quillorn
