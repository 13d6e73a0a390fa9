#pragma once

#include "Platform/Crypto.h"

#include <atomic>
#include <mutex>
#include <random>

namespace quillorn {

/// The same bytes for the same seed, in every run.
class FixedRandom final : public RandomSource {
  public:
    explicit FixedRandom(std::uint64_t seed = 1) : m_engine(seed) {}

    /// Throws std::system_error while `fails` is set.
    void fill(std::span<std::uint8_t> bytes) override;

    std::atomic<bool> fails = false;

  private:
    std::mutex m_mutex;
    std::mt19937_64 m_engine;
};

} // namespace quillorn
