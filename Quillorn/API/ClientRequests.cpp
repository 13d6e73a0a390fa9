#include "API/ClientRequests.h"

#include "API/Validation.h"

namespace quillorn {

namespace {

template <class Request>
std::vector<std::string> faultsOf(const Request& request) {
    Validation validation;
    validation.requireText(request.name, "name");
    validation.requireHash(request.color);
    return validation.takeFaults();
}

} // namespace

const RecordType& CreateClientRequest::recordType() {
    static constexpr auto fields = wireFields({
        wireField<&CreateClientRequest::name>("name"),
        wireField<&CreateClientRequest::description>("description"),
        wireField<&CreateClientRequest::color>("color"),
        wireField<&CreateClientRequest::icon>("icon"),
    });
    static constexpr RecordType type{"CreateClientRequest", fields};
    return type;
}

std::vector<std::string> CreateClientRequest::faults() const {
    return faultsOf(*this);
}

const RecordType& UpdateClientRequest::recordType() {
    static constexpr auto fields = wireFields({
        wireField<&UpdateClientRequest::name>("name"),
        wireField<&UpdateClientRequest::description>("description"),
        wireField<&UpdateClientRequest::color>("color"),
        wireField<&UpdateClientRequest::icon>("icon"),
        wireField<&UpdateClientRequest::isArchived>("isArchived"),
    });
    static constexpr RecordType type{"UpdateClientRequest", fields};
    return type;
}

std::vector<std::string> UpdateClientRequest::faults() const {
    return faultsOf(*this);
}

} // namespace quillorn
