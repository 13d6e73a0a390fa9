#pragma once

#include "CLI/Definitions.h"
#include "CLI/StoreWork.h"
#include "Models/Client.h"
#include "Models/ProjectOrder.h"

// The manual order of projects and groups on the command line.

namespace quillorn {

/// Where something goes among its neighbours; one of them is given.
struct PlaceOptions {
    bool up = false;
    bool down = false;
    bool first = false;
    bool last = false;

    bool isGiven() const { return up || down || first || last; }
};

void addPlaces(CLI::App* command, PlaceOptions& options);

/// The scope of that client, or of none for null, without what is archived.
ScopeLayout layoutOf(const Client* client, StoreWork& work);
/// The members of its group, or what stands outside of groups.
std::vector<Project*> neighboursOf(const Project& project, const ScopeLayout& layout);

/// Throws std::runtime_error where nothing says where to. The first does not go up.
template <ManuallyOrdered Object>
void place(Object& object, const std::vector<Object*>& neighbours, const PlaceOptions& options) {
    if (!options.isGiven())
        throw std::runtime_error("say where to: --up, --down, --first or --last");
    const auto found = std::ranges::find(neighbours, &object);
    if (found == neighbours.end())
        throw std::runtime_error("what is archived has no place");
    const auto index = static_cast<std::size_t>(found - neighbours.begin());
    move(neighbours, index,
         options.first  ? 0
         : options.last ? neighbours.size()
         : options.up   ? std::max<std::size_t>(index, 1) - 1
                        : std::min(index + 2, neighbours.size()));
}

} // namespace quillorn
