#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>

namespace quillorn {

/// Wall-clock times in the words of one locale. Knows nothing of zones. Safe to share between threads.
class DateFormats {
  public:
    explicit DateFormats(std::string_view locale);
    ~DateFormats();

    /// By a Unicode date pattern.
    std::string format(std::chrono::local_seconds time, std::string_view pattern);
    /// The locale's own order and words for the fields of a Unicode skeleton such as "yMMMd".
    std::string formatFields(std::chrono::local_seconds time, std::string_view skeleton);
    /// In the locale's medium date style.
    std::string mediumDate(std::chrono::local_seconds time);
    /// The day on which the locale's weeks begin.
    std::chrono::weekday firstWeekday() const;

  private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace quillorn
