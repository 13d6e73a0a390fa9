#pragma once

#include "Platform/Crypto.h"

#include <algorithm>
#include <mutex>
#include <random>

namespace quillorn {

/// The same bytes for the same seed, in every run.
class FixedRandom final : public RandomSource {
  public:
    explicit FixedRandom(std::uint64_t seed = 1) : m_seed(seed) {}

    void fill(std::span<std::uint8_t> bytes) override {
        const std::lock_guard lock(m_mutex);
        std::generate(bytes.begin(), bytes.end(), [this] { return static_cast<std::uint8_t>(m_engine()); });
    }
    /// Begins again.
    void restart() { m_engine.seed(m_seed); }

  private:
    const std::uint64_t m_seed;
    std::mutex m_mutex;
    std::mt19937_64 m_engine{m_seed};
};

} // namespace quillorn
