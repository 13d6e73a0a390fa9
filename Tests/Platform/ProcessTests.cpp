#include "Platform/Process.h"
#include "Platform/SystemLog.h"
#include "Support/ScopedEnvironment.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillorn {
namespace {

TEST(Process, raisesTheSoftDescriptorLimitToTheHardOne) {
    rlimit original{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &original), 0);
    rlimit lowered = original;
    lowered.rlim_cur = 64;
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &lowered), 0);
    EXPECT_EQ(raiseDescriptorLimit(), original.rlim_max);
    rlimit now{};
    getrlimit(RLIMIT_NOFILE, &now);
    EXPECT_EQ(now.rlim_cur, original.rlim_max);
    setrlimit(RLIMIT_NOFILE, &original);
}

/// What a log writes to standard error, which is a pipe meanwhile. JOURNAL_STREAM names the pipe or something else.
std::string written(bool underJournal, std::initializer_list<const char*> lines) {
    int ends[2];
    EXPECT_EQ(pipe(ends), 0);
    const int standardError = dup(STDERR_FILENO);
    dup2(ends[1], STDERR_FILENO);
    struct stat status{};
    fstat(STDERR_FILENO, &status);
    const ScopedEnvironment stream("JOURNAL_STREAM", std::to_string(status.st_dev) + ":" +
                                                         std::to_string(status.st_ino + (underJournal ? 0 : 1)));
    StandardErrorLog log;
    for (const char* line : lines)
        log.log(line);
    dup2(standardError, STDERR_FILENO);
    close(standardError);
    close(ends[1]);
    std::string text(4096, '\0');
    text.resize(static_cast<std::size_t>(read(ends[0], text.data(), text.size())));
    close(ends[0]);
    return text;
}

TEST(StandardErrorLog, writesALineForEachCallWithThePrefixOnlyForTheJournal) {
    EXPECT_EQ(written(false, {"API Server started", ""}), "API Server started\n\n");
    EXPECT_EQ(written(true, {"one", "two"}), "<6>one\n<6>two\n");
    EXPECT_EQ(written(false, {"a\nforged\r\nline"}), "a forged  line\n");
}

} // namespace
} // namespace quillorn
