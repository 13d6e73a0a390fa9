#pragma once

#include "Platform/Observers.h"

#include <functional>
#include <memory>

namespace quillorn {

class MainQueue;

/// Whether there is a way to other machines. For the main thread.
class NetworkPath {
  public:
    virtual ~NetworkPath() = default;
    virtual bool isSatisfied() const = 0;
    /// Tells each update, also one that leaves it as it was.
    [[nodiscard]] virtual Observation observe(std::function<void(bool isSatisfied)> handler) = 0;
};

/// That of this machine; satisfied where nobody can say. The queue must outlive it. Throws std::system_error.
std::unique_ptr<NetworkPath> systemNetworkPath(MainQueue& queue);

} // namespace quillorn
