#pragma once

#include "Models/ProjectTotals.h"
#include "Records/WireRecord.h"

namespace quillorn {

struct ClientDTO {
    UUID id;
    std::string name;
    std::optional<std::string> description{};
    std::string color;
    std::string icon;
    Date createdAt{};
    Date updatedAt{};
    bool isArchived = false;
    std::int64_t projectCount = 0;
    std::int64_t activeProjectCount = 0;
    std::int64_t totalTaskCount = 0;
    std::int64_t activeTaskCount = 0;
    /// In seconds; running entries count up to the moment of the answer.
    double totalTimeSpent = 0;

    static const RecordType& recordType();
};

class ClientRows {
  public:
    using Object = Client;
    using Record = ClientDTO;

    ClientRows(ModelContext& context, std::vector<Client*> clients, Date now)
        : m_clients(std::move(clients)),
          m_totals(context, m_clients, now) {}

    std::size_t size() const { return m_clients.size(); }
    void fill(std::size_t index, ClientDTO& record) const;

  private:
    std::vector<Client*> m_clients;
    ClientTotalsTable m_totals;
};

} // namespace quillorn
