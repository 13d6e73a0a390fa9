#pragma once

#include "Platform/Observers.h"

#include <functional>
#include <memory>

namespace quillorn {

class Bus;
class MainQueue;

/// Tells on the main thread when time has jumped: the machine has slept, its clock was set, or it went to another zone.
/// Timers of a queue don't notice.
class WakeSignals {
  public:
    virtual ~WakeSignals() = default;
    [[nodiscard]] virtual Observation observe(std::function<void()> handler) = 0;
};

/// Those of this machine; both must outlive it. Throws std::system_error.
std::unique_ptr<WakeSignals> systemWakeSignals(MainQueue& queue, Bus& systemBus);

} // namespace quillorn
