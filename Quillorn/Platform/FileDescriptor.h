#pragma once

#include <unistd.h>
#include <utility>

namespace quillorn {

/// Owns an open file descriptor.
class FileDescriptor {
  public:
    FileDescriptor() = default;
    explicit FileDescriptor(int number) : m_number(number) {}
    FileDescriptor(FileDescriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~FileDescriptor() {
        if (m_number >= 0)
            ::close(m_number);
    }

    /// Negative when nothing is open.
    int number() const { return m_number; }
    explicit operator bool() const { return m_number >= 0; }

  private:
    int m_number = -1;
};

} // namespace quillorn
