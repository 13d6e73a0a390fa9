#pragma once

#include "Platform/Date.h"

namespace quillorn {

/// Tells what time it is. Rules never ask the system themselves, so that each can be tested at a fixed instant.
class Clock {
  public:
    virtual ~Clock() = default;
    virtual Date now() const = 0;
};

class SystemClock final : public Clock {
  public:
    Date now() const override;
};

} // namespace quillorn
