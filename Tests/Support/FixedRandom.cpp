#include "Support/FixedRandom.h"

#include <system_error>

namespace quillorn {

void FixedRandom::fill(std::span<std::uint8_t> bytes) {
    if (fails)
        throw std::system_error(ENOSYS, std::generic_category(), "can't get random bytes");
    const std::lock_guard lock(m_mutex);
    for (std::uint8_t& byte : bytes)
        byte = static_cast<std::uint8_t>(m_engine());
}

} // namespace quillorn
