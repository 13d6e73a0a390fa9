#include "Support/ScopedEnvironment.h"

#include <stdlib.h>

namespace quillorn {

namespace {

void put(const std::string& name, const std::optional<std::string>& value) {
    if (value)
        setenv(name.c_str(), value->c_str(), 1);
    else
        unsetenv(name.c_str());
}

} // namespace

ScopedEnvironment::ScopedEnvironment(std::string name, std::optional<std::string> value) : m_name(std::move(name)) {
    if (const char* old = getenv(m_name.c_str()))
        m_old = old;
    put(m_name, value);
}

ScopedEnvironment::~ScopedEnvironment() {
    put(m_name, m_old);
}

} // namespace quillorn
