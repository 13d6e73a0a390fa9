#pragma once

#include <cstdint>

namespace quillorn {

enum class PortUse { free, quillorn, other };

/// Who listens on a port of this machine.
PortUse probePort(std::uint16_t port);

} // namespace quillorn
