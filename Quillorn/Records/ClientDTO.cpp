#include "Records/ClientDTO.h"

namespace quillorn {

namespace {

constexpr std::tuple clientFields{
    wireField<&ClientDTO::id, &Client::id>("id", "Identifies the client for good."),
    wireField<&ClientDTO::name, &Client::name>("name", "Its name."),
    wireField<&ClientDTO::description, &Client::clientDescription>("description",
                                                                   "Whatever else there is to say, as free text."),
    wireField<&ClientDTO::color, &Client::color>("color", "Its colour, such as #34C759."),
    wireField<&ClientDTO::icon, &Client::icon>("icon", "The name of the symbol that stands for it."),
    wireField<&ClientDTO::createdAt, &Client::createdAt>("createdAt", "When it was created."),
    wireField<&ClientDTO::updatedAt, &Client::updatedAt>("updatedAt", "When it was last changed."),
    wireField<&ClientDTO::isArchived, &Client::isArchived>(
        "isArchived", "Whether it is put away. Lists leave out what belongs to an archived client unless asked."),
    wireField<&ClientDTO::projectCount>(
        "projectCount", {.description = "Number of its projects, archived ones included.", .minimum = 0}),
    wireField<&ClientDTO::activeProjectCount>("activeProjectCount",
                                              {.description = "How many of them are not archived.", .minimum = 0}),
    wireField<&ClientDTO::totalTaskCount>(
        "totalTaskCount",
        {.description = "Number of tasks in all its projects, archived ones included.", .minimum = 0}),
    wireField<&ClientDTO::activeTaskCount>("activeTaskCount",
                                           {.description = "How many of those tasks are open.", .minimum = 0}),
    wireField<&ClientDTO::totalTimeSpent>(
        "totalTimeSpent",
        "Seconds of time on all its projects; a running entry counts up to the moment of the answer."),
};

} // namespace

const RecordType& ClientDTO::recordType() {
    static constexpr auto fields = wireFields<ClientDTO>(clientFields);
    static constexpr RecordType type{"ClientDTO", fields};
    return type;
}

void ClientRows::fill(std::size_t index, ClientDTO& record) const {
    const Client& client = *m_clients[index];
    copyFields(clientFields, client, record);
    const ClientTotals totals = m_totals.of(client);
    record.projectCount = totals.projectCount;
    record.activeProjectCount = totals.activeProjectCount;
    record.totalTaskCount = totals.totalTaskCount;
    record.activeTaskCount = totals.activeTaskCount;
    record.totalTimeSpent = totals.totalTimeSpent;
}

} // namespace quillorn
