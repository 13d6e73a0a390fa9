#include "Records/TagRequests.h"

#include "Records/Validation.h"

namespace quillorn {

namespace {

template <class Request>
std::vector<std::string> faultsOf(const Request& request) {
    Validation validation;
    validation.requireText(request.name, "name");
    validation.requireHexColor(request.color);
    return validation.takeFaults();
}

} // namespace

const RecordType& CreateTagRequest::recordType() {
    static constexpr auto fields = wireFields({
        wireField<&CreateTagRequest::name>("name"),
        wireField<&CreateTagRequest::color>("color"),
    });
    static constexpr RecordType type{"CreateTagRequest", fields};
    return type;
}

std::vector<std::string> CreateTagRequest::faults() const {
    return faultsOf(*this);
}

const RecordType& UpdateTagRequest::recordType() {
    static constexpr auto fields = wireFields({
        wireField<&UpdateTagRequest::name>("name"),
        wireField<&UpdateTagRequest::color>("color"),
    });
    static constexpr RecordType type{"UpdateTagRequest", fields};
    return type;
}

std::vector<std::string> UpdateTagRequest::faults() const {
    return faultsOf(*this);
}

} // namespace quillorn
