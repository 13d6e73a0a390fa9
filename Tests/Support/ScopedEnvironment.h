#pragma once

#include <optional>
#include <string>

namespace quillorn {

/// Sets or, without a value, takes away an environment variable for one test.
class ScopedEnvironment {
  public:
    ScopedEnvironment(std::string name, std::optional<std::string> value);
    ~ScopedEnvironment();
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

  private:
    std::string m_name;
    std::optional<std::string> m_old;
};

} // namespace quillorn
