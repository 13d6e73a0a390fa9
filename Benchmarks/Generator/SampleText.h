#pragma once

#include "Platform/Crypto.h"

#include <cstdint>
#include <random>
#include <string>

namespace quillorn {

/// Dice that fall the same way for the same seed, on every machine.
class SampleRandom final : public RandomSource {
  public:
    explicit SampleRandom(std::uint64_t seed) : m_engine(seed) {}

    void fill(std::span<std::uint8_t> bytes) override;
    /// 0 to `count` - 1.
    int below(int count) { return static_cast<int>(m_engine() % static_cast<std::uint64_t>(count)); }
    int between(int low, int high) { return low + below(high - low + 1); }
    bool chance(int percent) { return below(100) < percent; }

  private:
    std::mt19937_64 m_engine;
};

/// A few words in a row, the first with a capital.
std::string sampleWords(SampleRandom& random, int low, int high);
/// Paragraphs of about `characters` characters, with line breaks, quotes and letters outside ASCII as people write
/// them.
std::string sampleProse(SampleRandom& random, int characters);

} // namespace quillorn
