#include "Platform/SystemLog.h"

#include <cstdlib>
#include <fmt/core.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillorn {

namespace {

/// systemd names the journal's stream as "<device>:<inode>"; a child whose standard error was redirected inherits
/// the variable all the same, so it counts only where it names the very stream.
bool standardErrorIsJournal() {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing here changes the environment
    const char* stream = std::getenv("JOURNAL_STREAM");
    struct stat status{};
    return stream != nullptr && fstat(STDERR_FILENO, &status) == 0 &&
           stream == fmt::format("{}:{}", status.st_dev, status.st_ino);
}

} // namespace

StandardErrorLog::StandardErrorLog() : m_journal(standardErrorIsJournal()) {}

} // namespace quillorn
