#include "Records/ProjectRequests.h"

#include "Records/Validation.h"

namespace quillorn {

const RecordType& CreateProjectRequest::recordType() {
    static constexpr auto fields = wireFields({
        wireField<&CreateProjectRequest::name>("name"),
        wireField<&CreateProjectRequest::description>("description"),
        wireField<&CreateProjectRequest::color>("color"),
        wireField<&CreateProjectRequest::clientId>("clientId"),
    });
    static constexpr RecordType type{"CreateProjectRequest", fields};
    return type;
}

std::vector<std::string> CreateProjectRequest::faults() const {
    return nameAndHashFaults(*this);
}

const RecordType& UpdateProjectRequest::recordType() {
    static constexpr auto fields = wireFields({
        wireField<&UpdateProjectRequest::name>("name"),
        wireField<&UpdateProjectRequest::description>("description"),
        wireField<&UpdateProjectRequest::color>("color"),
        wireField<&UpdateProjectRequest::clientId>("clientId"),
        wireField<&UpdateProjectRequest::isArchived>("isArchived"),
    });
    static constexpr RecordType type{"UpdateProjectRequest", fields};
    return type;
}

std::vector<std::string> UpdateProjectRequest::faults() const {
    return nameAndHashFaults(*this);
}

} // namespace quillorn
