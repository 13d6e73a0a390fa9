#pragma once

#include <cstddef>
#include <random>
#include <vector>

namespace quillorn {

/// Chance for tests, the same in every run.
class Dice {
  public:
    explicit Dice(unsigned seed) : m_engine(seed) {}
    /// From 0 on.
    std::size_t below(std::size_t limit) { return m_engine() % limit; }
    bool chance(std::size_t percent) { return below(100) < percent; }
    template <class Type>
    Type* oneOf(const std::vector<Type*>& records) {
        return records[below(records.size())];
    }

  private:
    std::mt19937 m_engine;
};

} // namespace quillorn
