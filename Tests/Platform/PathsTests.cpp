#include "Platform/Linux/LinuxPaths.h"
#include "Support/FakePaths.h"
#include "Support/ScopedEnvironment.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

namespace quillorn {
namespace {

TEST(LinuxPaths, followsTheBaseDirectoryRules) {
    const std::string home = getpwuid(getuid())->pw_dir;
    const struct {
        std::optional<std::string> data, config, home;
        std::string support, settings;
    } cases[] = {
        {"/d", "/c", "/h", "/d", "/c"},
        {std::nullopt, std::nullopt, "/h", "/h/.local/share", "/h/.config"},
        {"", "", "/h", "/h/.local/share", "/h/.config"},
        {"relative", "./c", "/h", "/h/.local/share", "/h/.config"},
        {std::nullopt, "/c", std::nullopt, home + "/.local/share", "/c"},
        {"/d", std::nullopt, "", "/d", home + "/.config"},
    };
    for (const auto& c : cases) {
        const ScopedEnvironment data("XDG_DATA_HOME", c.data);
        const ScopedEnvironment config("XDG_CONFIG_HOME", c.config);
        const ScopedEnvironment homeFolder("HOME", c.home);
        const auto paths = systemPaths();
        EXPECT_EQ(paths->applicationSupport(), c.support);
        EXPECT_EQ(paths->configuration(), c.settings);
        EXPECT_EQ(paths->groupContainer("group.example"), std::nullopt);
    }
}

TEST(LinuxPaths, findsResourcesInTheBuildTreeBeforeTheInstallation) {
    const TemporaryFolder folder;
    const LinuxPaths paths(folder / "bin/quillorn");
    EXPECT_THROW(paths.resources(), std::runtime_error);
    std::filesystem::create_directories(folder / "share/quillorn");
    EXPECT_EQ(paths.resources(), folder / "share/quillorn");
    std::filesystem::create_directories(folder / "bin/Resources");
    EXPECT_EQ(paths.resources(), folder / "bin/Resources");
}

TEST(FakePaths, canLackAHomeAndHaveAGroupContainer) {
    FakePaths paths("/root");
    EXPECT_EQ(paths.applicationSupport(), "/root/share");
    EXPECT_EQ(paths.groupContainer("g"), std::nullopt);
    paths.hasHome = false;
    paths.hasGroupContainer = true;
    EXPECT_THROW(paths.applicationSupport(), std::runtime_error);
    EXPECT_THROW(paths.configuration(), std::runtime_error);
    EXPECT_EQ(paths.groupContainer("g"), "/root/groups/g");
}

} // namespace
} // namespace quillorn
