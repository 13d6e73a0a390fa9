#pragma once

#include "Models/Client.h"

namespace quillorn {

class ModelContext;
class Text;

/// Which clients a listing shows; an absent condition does not restrict.
struct ClientSearch {
    bool includeArchived = false;
    /// Contained in the name, without regard to case.
    std::optional<std::string> name{};
};

/// The clients that match, by name. `text` compares in the user's locale.
std::vector<Client*> findClients(ModelContext& context, const ClientSearch& search, const Text& text);

} // namespace quillorn
