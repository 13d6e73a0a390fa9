#include "CLI/RecordNames.h"

#include "Models/Client.h"
#include "Models/Note.h"
#include "Models/Project.h"
#include "Models/ProjectDivider.h"
#include "Models/ProjectTask.h"
#include "Models/Tag.h"
#include "Models/TimeEntry.h"

namespace quillorn {

std::string nameOf(const Client& client) {
    return client.name();
}
std::string nameOf(const Note& note) {
    return note.displayTitle();
}
std::string nameOf(const Project& project) {
    return project.name();
}
std::string nameOf(const ProjectDivider& group) {
    return group.title();
}
std::string nameOf(const ProjectTask& task) {
    return task.title();
}
std::string nameOf(const Tag& tag) {
    return tag.name();
}
std::string nameOf(const TimeEntry& entry) {
    return entry.displayName();
}

std::string shortId(const UUID& id) {
    constexpr std::size_t digits = 8;
    return id.string().substr(0, digits);
}

} // namespace quillorn
