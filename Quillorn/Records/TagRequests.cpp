#include "Records/TagRequests.h"

#include "Records/Validation.h"

namespace quillorn {

namespace {

/// What both requests have.
constexpr std::tuple sharedFields{
    wireField<&TagFields::color>("color", {.description = "A colour: \"#\" and six hexadecimal digits.",
                                           .pattern = "^#[0-9A-Fa-f]{6}$",
                                           .defaultValue = R"("#007AFF")"}),
};

template <class Request>
std::vector<std::string> faultsOf(const Request& request) {
    Validation validation;
    validation.requireText(request.name, "name");
    validation.requireHexColor(request.color);
    return validation.takeFaults();
}

} // namespace

const RecordType& CreateTagRequest::recordType() {
    static constexpr auto fields = wireFields<CreateTagRequest>(
        wireField<&CreateTagRequest::name>("name", "Its name. Must not be blank. Other tags may have it too."),
        sharedFields);
    static constexpr RecordType type{"CreateTagRequest", fields};
    return type;
}

std::vector<std::string> CreateTagRequest::faults() const {
    return faultsOf(*this);
}

const RecordType& UpdateTagRequest::recordType() {
    static constexpr auto fields = wireFields<UpdateTagRequest>(
        wireField<&UpdateTagRequest::name>("name", "Its name. Must not be blank."), sharedFields);
    static constexpr RecordType type{"UpdateTagRequest", fields, RecordUse::update};
    return type;
}

std::vector<std::string> UpdateTagRequest::faults() const {
    return faultsOf(*this);
}

} // namespace quillorn
