#pragma once

#include <string>

namespace quillorn {

class Client;
class Note;
class Project;
class ProjectDivider;
class ProjectTask;
class Tag;
class TimeEntry;
class UUID;

/// What a line says of a record.
std::string nameOf(const Client& client);
std::string nameOf(const Note& note);
std::string nameOf(const Project& project);
std::string nameOf(const ProjectDivider& group);
std::string nameOf(const ProjectTask& task);
std::string nameOf(const Tag& tag);
std::string nameOf(const TimeEntry& entry);

/// The beginning of an id, which names a record and spares people the rest.
std::string shortId(const UUID& id);

} // namespace quillorn
