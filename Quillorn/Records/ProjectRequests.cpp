#include "Records/ProjectRequests.h"

#include "Records/Validation.h"

namespace quillorn {

namespace {

/// What both requests have.
constexpr std::tuple sharedFields{
    wireField<&ProjectFields::description>("description",
                                           {.description = "What it is about, as free text.",
                                            .inUpdate = "What it is about. An empty text stays an empty text."}),
    wireField<&ProjectFields::color>("color", {.description = "A colour. Must start with \"#\", such as #34C759.",
                                               .pattern = "^#",
                                               .defaultValue = R"("#007AFF")"}),
    wireField<&ProjectFields::clientId>("clientId",
                                        {.description = "Its client, which must exist.",
                                         .inUpdate = "Gives the project to that client, which must exist."}),
};

} // namespace

const RecordType& CreateProjectRequest::recordType() {
    static constexpr auto fields = wireFields<CreateProjectRequest>(
        wireField<&CreateProjectRequest::name>("name", "Its name. Must not be blank."), sharedFields);
    static constexpr RecordType type{"CreateProjectRequest", fields};
    return type;
}

std::vector<std::string> CreateProjectRequest::faults() const {
    return nameAndHashFaults(*this);
}

const RecordType& UpdateProjectRequest::recordType() {
    static constexpr auto fields = wireFields<UpdateProjectRequest>(
        wireField<&UpdateProjectRequest::name>("name", "Its name. Must not be blank."), sharedFields,
        wireField<&UpdateProjectRequest::isArchived>("isArchived", "True puts it away, false takes it out again."));
    static constexpr RecordType type{"UpdateProjectRequest", fields, RecordUse::update};
    return type;
}

std::vector<std::string> UpdateProjectRequest::faults() const {
    return nameAndHashFaults(*this);
}

} // namespace quillorn
