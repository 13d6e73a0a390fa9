#pragma once

#include <optional>
#include <stdlib.h>
#include <string>

namespace quillorn {

/// Sets or, without a value, takes away an environment variable for one test.
class ScopedEnvironment {
  public:
    ScopedEnvironment(std::string name, const std::optional<std::string>& value) : m_name(std::move(name)) {
        if (const char* old = getenv(m_name.c_str()))
            m_old = old;
        put(value);
    }
    ~ScopedEnvironment() { put(m_old); }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

  private:
    void put(const std::optional<std::string>& value) {
        value ? setenv(m_name.c_str(), value->c_str(), 1) : unsetenv(m_name.c_str());
    }

    std::string m_name;
    std::optional<std::string> m_old;
};

} // namespace quillorn
