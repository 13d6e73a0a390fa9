#pragma once

#include "Platform/Crypto.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <random>
#include <system_error>

namespace quillorn {

/// The same bytes for the same seed, in every run.
class FixedRandom final : public RandomSource {
  public:
    explicit FixedRandom(std::uint64_t seed = 1) : m_engine(seed) {}

    void fill(std::span<std::uint8_t> bytes) override {
        if (fails)
            throw std::system_error(ENOSYS, std::generic_category(), "can't get random bytes");
        const std::lock_guard lock(m_mutex);
        std::generate(bytes.begin(), bytes.end(), [this] { return static_cast<std::uint8_t>(m_engine()); });
    }

    std::atomic<bool> fails = false;

  private:
    std::mutex m_mutex;
    std::mt19937_64 m_engine;
};

} // namespace quillorn
