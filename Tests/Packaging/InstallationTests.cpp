#include "Integration/ProgramTest.h"

#include <gmock/gmock.h>

namespace quillorn {
namespace {

using testing::HasSubstr;
using Installation = ProgramTest;

/// Installs a part of the build under `prefix`, or below `stage` as if that were the root.
void install(const TemporaryFolder& home, const std::string& prefix, const std::string& stage = {},
             const std::string& part = "program") {
    ProgramProcess cmake(home.path(),
                         {.program = QUILLORN_CMAKE,
                          .arguments = {"--install", QUILLORN_BUILD, "--prefix", prefix, "--component", part},
                          .environment = std::map<std::string, std::string>{{"DESTDIR", stage}}});
    ASSERT_EQ(cmake.wait(), 0) << cmake.errors();
}

TEST_F(Installation, servesItsResourcesFromAnyPlace) {
    install(home, home / "first");
    std::filesystem::rename(home / "first", home / "and then here");
    const ServerProcess server(home.path(), {.program = home / "and then here/bin/quillorn"});
    const std::string answer = server.request("GET", "/openapi.json");
    EXPECT_TRUE(answer.ends_with(readFile(home / "and then here/share/quillorn/openapi.json")));
    EXPECT_THAT(answer, HasSubstr("\"openapi\""));
}

TEST_F(Installation, putsTheUnitAndTheCompletionsWhereTheyAreLookedFor) {
    struct Case {
        std::string prefix, unit, functions;
    };
    const Case cases[] = {
        {"/usr", "lib/systemd/user", "share/zsh/vendor-completions"},
        {"/usr/local", "lib/systemd/user", "share/zsh/site-functions"},
        {"/home/anna/.local", "share/systemd/user", "share/zsh/site-functions"},
        {"/opt/100% $mine", "share/systemd/user", "share/zsh/site-functions"},
    };
    for (const auto& [prefix, unit, functions] : cases) {
        const TemporaryFolder stage;
        install(home, prefix, stage.path());
        const std::filesystem::path installed = stage.path().string() + prefix;
        for (const std::string& file :
             {std::string("bin/quillorn"), functions + "/_quillorn",
              std::string("share/bash-completion/completions/quillorn"),
              std::string("share/fish/vendor_completions.d/quillorn.fish"), std::string("share/man/man1/quillorn.1"),
              std::string("share/dbus-1/services/com.quillorn.Quillorn.service"),
              std::string("share/dbus-1/interfaces/com.quillorn.Reminders1.xml"),
              std::string("share/dbus-1/interfaces/com.quillorn.Sync1.xml"),
              std::string("share/doc/quillorn/README.md")})
            EXPECT_TRUE(std::filesystem::exists(installed / file)) << prefix << " " << file;
        const std::string started = prefix.starts_with("/opt") ? "/opt/100%% $$mine" : prefix;
        EXPECT_THAT(readFile(installed / unit / "quillorn.service"),
                    HasSubstr("\nExecStart=\"" + started + "/bin/quillorn\" serve\n"));
    }
}

TEST_F(Installation, theWindowIsOneThatDesktopsKnow) {
    if (!std::filesystem::exists(QUILLORN_BUILD "/quillorn-desktop"))
        GTEST_SKIP() << "the window is not built";
    const std::pair<std::string, std::string> cases[] = {
        {"/usr", "quillorn-desktop"},
        {"/opt/100% $mine", "\"/opt/100%% \\\\$mine/bin/quillorn-desktop\""},
    };
    for (const auto& [prefix, program] : cases) {
        const TemporaryFolder stage;
        install(home, prefix, stage.path(), "desktop");
        const std::string shared = stage.path().string() + prefix + "/share/";
        const std::string entry = shared + "applications/com.quillorn.Desktop.desktop";
        EXPECT_THAT(readFile(entry), HasSubstr("\nExec=" + program + " %u\n"));
        EXPECT_THAT(readFile(entry), HasSubstr("\nExec=" + program + " --quick-add\n"));
        EXPECT_THAT(readFile(shared + "dbus-1/services/com.quillorn.Desktop.service"),
                    HasSubstr("\nExec=\"" + prefix + "/bin/quillorn-desktop\"\n"));
        EXPECT_TRUE(std::filesystem::exists(shared + "icons/hicolor/scalable/apps/com.quillorn.Desktop.svg"));
        const std::string about = shared + "metainfo/com.quillorn.Desktop.metainfo.xml";
        const std::vector<std::string> checks[] = {{QUILLORN_DESKTOP_FILE_VALIDATE, entry},
                                                   {QUILLORN_APPSTREAMCLI, "validate", "--no-net", about}};
        for (const std::vector<std::string>& check : checks) {
            if (!std::filesystem::exists(check.front()))
                GTEST_SKIP() << check.front() << " is not installed";
            ProgramProcess process(home.path(),
                                   {.program = check.front(), .arguments = {check.begin() + 1, check.end()}});
            EXPECT_EQ(process.wait(), 0) << process.output() << process.errors();
        }
    }
}

TEST_F(Installation, theUnitIsOneThatSystemdTakes) {
    if (!std::filesystem::exists(QUILLORN_SYSTEMD_ANALYZE))
        GTEST_SKIP() << "systemd-analyze is not installed";
    install(home, home / "a prefix");
    ProgramProcess analyze(
        home.path(),
        {.program = QUILLORN_SYSTEMD_ANALYZE,
         .arguments = {"--user", "--man=no", "verify", home / "a prefix/share/systemd/user/quillorn.service"},
         .environment = std::map<std::string, std::string>{{"XDG_RUNTIME_DIR", home.path()}}});
    EXPECT_EQ(analyze.wait(), 0);
    EXPECT_EQ(analyze.errors(), "");
}

} // namespace
} // namespace quillorn
