#include "Models/ClientSearch.h"

#include "Models/SearchConditions.h"
#include "Models/Sorting.h"

namespace quillorn {

std::vector<Client*> findClients(ModelContext& context, const ClientSearch& search, const Text& text) {
    auto clients = context.fetch<Client>(search.includeArchived ? Query{} : Query{.where = "NOT isArchived"});
    keepContaining(clients, text, search.name, &Client::name);
    sortByName(clients, text);
    return clients;
}

} // namespace quillorn
