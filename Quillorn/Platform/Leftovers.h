#pragma once

#include "Platform/FileDescriptor.h"

#include <filesystem>

namespace quillorn {

/// A file or folder that is to go when this process ends, however it is ended by those who ask it to. Who made it
/// removes it; this is for signals alone.
class Leftover {
  public:
    explicit Leftover(std::filesystem::path path);
    ~Leftover();
    Leftover(const Leftover&) = delete;
    Leftover& operator=(const Leftover&) = delete;

    const std::filesystem::path& path() const { return m_path; }

  private:
    std::filesystem::path m_path;
};

/// Removes every Leftover that there is, whatever other threads are about, and ends the process as `signal` does. For
/// TerminationSignals, in programs whose work may be broken off anywhere.
[[noreturn]] void endBySignal(int signal);

/// Locks what was just made, for as long as it is open, so that others know it for something in use. False where one of
/// them took it for abandoned before, and removes it.
bool claim(const FileDescriptor& made);

/// Removes a file or folder of this user that no process has claimed any more. Links are not followed.
void removeIfAbandoned(const std::filesystem::path& path) noexcept;

} // namespace quillorn
