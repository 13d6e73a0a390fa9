#include "Records/ClientRequests.h"

#include "Records/Validation.h"

namespace quillorn {

namespace {

/// What both requests have.
constexpr std::tuple sharedFields{
    wireField<&ClientFields::description>(
        "description", {.description = "Whatever else there is to say, as free text.",
                        .inUpdate = "Whatever else there is to say. An empty text stays an empty text."}),
    wireField<&ClientFields::color>("color", {.description = "A colour. Must start with \"#\", such as #34C759.",
                                              .pattern = "^#",
                                              .defaultValue = R"("#007AFF")"}),
    wireField<&ClientFields::icon>(
        "icon", {.description = "The name of the symbol that stands for it.", .defaultValue = R"("building.2.fill")"}),
};

} // namespace

const RecordType& CreateClientRequest::recordType() {
    static constexpr auto fields = wireFields<CreateClientRequest>(
        wireField<&CreateClientRequest::name>("name", "Its name. Must not be blank."), sharedFields);
    static constexpr RecordType type{"CreateClientRequest", fields};
    return type;
}

std::vector<std::string> CreateClientRequest::faults() const {
    return nameAndHashFaults(*this);
}

const RecordType& UpdateClientRequest::recordType() {
    static constexpr auto fields = wireFields<UpdateClientRequest>(
        wireField<&UpdateClientRequest::name>("name", "Its name. Must not be blank."), sharedFields,
        wireField<&UpdateClientRequest::isArchived>(
            "isArchived", "True puts it away, false takes it out again. Its projects keep their own mark."));
    static constexpr RecordType type{"UpdateClientRequest", fields, RecordUse::update};
    return type;
}

std::vector<std::string> UpdateClientRequest::faults() const {
    return nameAndHashFaults(*this);
}

} // namespace quillorn
