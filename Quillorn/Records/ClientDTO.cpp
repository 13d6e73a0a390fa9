#include "Records/ClientDTO.h"

namespace quillorn {

const RecordType& ClientDTO::recordType() {
    static constexpr auto fields = wireFields({
        wireField<&ClientDTO::id>("id"),
        wireField<&ClientDTO::name>("name"),
        wireField<&ClientDTO::description>("description"),
        wireField<&ClientDTO::color>("color"),
        wireField<&ClientDTO::icon>("icon"),
        wireField<&ClientDTO::createdAt>("createdAt"),
        wireField<&ClientDTO::updatedAt>("updatedAt"),
        wireField<&ClientDTO::isArchived>("isArchived"),
        wireField<&ClientDTO::projectCount>("projectCount"),
        wireField<&ClientDTO::activeProjectCount>("activeProjectCount"),
        wireField<&ClientDTO::totalTaskCount>("totalTaskCount"),
        wireField<&ClientDTO::activeTaskCount>("activeTaskCount"),
        wireField<&ClientDTO::totalTimeSpent>("totalTimeSpent"),
    });
    static constexpr RecordType type{"ClientDTO", fields};
    return type;
}

void ClientRows::fill(std::size_t index, ClientDTO& record) const {
    const Client& client = *m_clients[index];
    const ClientTotals totals = m_totals.of(client);
    record.id = client.id();
    record.name = client.name();
    record.description = client.clientDescription();
    record.color = client.color();
    record.icon = client.icon();
    record.createdAt = client.createdAt();
    record.updatedAt = client.updatedAt();
    record.isArchived = client.isArchived();
    record.projectCount = totals.projectCount;
    record.activeProjectCount = totals.activeProjectCount;
    record.totalTaskCount = totals.totalTaskCount;
    record.activeTaskCount = totals.activeTaskCount;
    record.totalTimeSpent = totals.totalTimeSpent;
}

} // namespace quillorn
