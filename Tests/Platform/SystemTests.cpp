#include "Platform/Linux/LinuxPaths.h"
#include "Platform/Process.h"
#include "Platform/SystemLog.h"
#include "Support/ScopedEnvironment.h"
#include "Support/ScopedLimit.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillorn {
namespace {

TEST(LinuxPaths, followsTheBaseDirectoryRules) {
    using Value = std::optional<std::string>;
    const std::string user = getpwuid(getuid())->pw_dir;
    const std::tuple<Value, Value, Value, std::string, std::string> cases[] = {
        {"/d", "/c", "/h", "/d", "/c"},
        {{}, {}, "/h", "/h/.local/share", "/h/.config"},
        {"", "", "/h", "/h/.local/share", "/h/.config"},
        {"relative", "./c", "/h", "/h/.local/share", "/h/.config"},
        {{}, "/c", {}, user + "/.local/share", "/c"},
        {"/d", {}, "", "/d", user + "/.config"},
    };
    for (const auto& [data, config, home, support, settings] : cases) {
        const ScopedEnvironment a("XDG_DATA_HOME", data), b("XDG_CONFIG_HOME", config), c("HOME", home);
        EXPECT_EQ(systemPaths()->applicationSupport(), support);
        EXPECT_EQ(systemPaths()->configuration(), settings);
    }
}

TEST(LinuxPaths, findsResourcesInTheBuildTreeBeforeTheInstallation) {
    const TemporaryFolder folder;
    const LinuxPaths paths(folder / "bin/quillorn");
    EXPECT_THROW(paths.resources(), std::runtime_error);
    for (const char* found : {"share/quillorn", "bin/Resources"}) {
        std::filesystem::create_directories(folder / found);
        EXPECT_EQ(paths.resources(), folder / found);
    }
}

TEST(Process, raisesTheSoftDescriptorLimitToTheHardOne) {
    const ScopedLimit lowered(RLIMIT_NOFILE, 64);
    EXPECT_EQ(raiseDescriptorLimit(), lowered.before().rlim_max);
    rlimit now{};
    getrlimit(RLIMIT_NOFILE, &now);
    EXPECT_EQ(now.rlim_cur, lowered.before().rlim_max);
}

/// What a log writes to standard error. JOURNAL_STREAM names that or something else.
std::string written(bool underJournal, std::initializer_list<const char*> lines) {
    testing::internal::CaptureStderr();
    struct stat status{};
    fstat(STDERR_FILENO, &status);
    const ScopedEnvironment stream("JOURNAL_STREAM", std::to_string(status.st_dev) + ":" +
                                                         std::to_string(status.st_ino + (underJournal ? 0 : 1)));
    StandardErrorLog log;
    for (const char* line : lines)
        log.log(line);
    return testing::internal::GetCapturedStderr();
}

TEST(StandardErrorLog, writesALineForEachCallWithThePrefixOnlyForTheJournal) {
    EXPECT_EQ(written(false, {"API Server started", ""}), "API Server started\n\n");
    EXPECT_EQ(written(true, {"one", "two"}), "<6>one\n<6>two\n");
    EXPECT_EQ(written(false, {"a\nforged\r\nline"}), "a forged  line\n");
}

} // namespace
} // namespace quillorn
