#pragma once

#include "Platform/Observers.h"

#include <functional>
#include <string>

namespace quillorn {

/// A key that the desktop hands to this program whichever window has the focus. For the main thread.
class GlobalShortcut {
  public:
    virtual ~GlobalShortcut() = default;
    /// Whether the desktop has such keys.
    virtual bool isAvailable() const = 0;
    /// The key, in the desktop's words; empty while it is not ours.
    virtual const std::string& trigger() const = 0;
    /// Has the desktop give us the key, for which it may ask the user, or gives it back.
    virtual void setWanted(bool isWanted) = 0;
    /// Told when any of this changes.
    [[nodiscard]] virtual Observation observe(std::function<void()> handler) = 0;
};

} // namespace quillorn
