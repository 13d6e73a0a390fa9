#include "Records/ClientRequests.h"

#include "Records/Validation.h"

namespace quillorn {

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
    return nameAndHashFaults(*this);
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
    return nameAndHashFaults(*this);
}

} // namespace quillorn
