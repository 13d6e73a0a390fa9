#include "Platform/RunLoop.h"
#include "Support/MemorySettings.h"
#include "Support/RecordingLog.h"
#include "Support/ScopedLimit.h"
#include "Support/TemporaryFolder.h"
#include "Support/Threads.h"

#include <gmock/gmock.h>
#include <limits>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillorn {
namespace {

namespace fs = std::filesystem;

class FileSettingsTest : public testing::Test {
  protected:
    /// The words of the failure of a change.
    std::string failure() {
        try {
            settings.set("more", "new");
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "none";
    }

    void expectFiles(const std::vector<std::string>& expected) const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(file.parent_path()))
            names.push_back(entry.path().filename().string());
        EXPECT_THAT(names, testing::UnorderedElementsAreArray(expected));
    }

    TemporaryFolder folder;
    fs::path file = folder / "config/Quillorn/settings.json";
    RecordingLog log;
    FileSettings settings{file, log};
};

TEST_F(FileSettingsTest, keepsEveryKindOfValueAndRefusesWhatJsonCannotSay) {
    const Json values[] = {nullptr, true, 1, 1.0, -0.5, "", "é\n\"", Json::Array{1, "a"}, Json::Object{{"k", 2}}};
    for (const Json& value : values) {
        settings.set("key", value);
        EXPECT_THROW(settings.set("key", std::numeric_limits<double>::infinity()), std::runtime_error);
        EXPECT_THROW(settings.set("key", "\xFF"), std::runtime_error);
        EXPECT_EQ(settings.value("key"), value) << value.text();
        EXPECT_EQ(settings.storedValue("key"), value);
    }
}

TEST_F(FileSettingsTest, defaultsStandBehindStoredValues) {
    settings.registerDefaults({{"port", 18080}, {"name", "a"}});
    settings.registerDefaults({{"name", "b"}});
    EXPECT_EQ(settings.value("name"), Json("b"));
    EXPECT_EQ(settings.storedValue("port"), std::nullopt);
    settings.set("port", 1);
    EXPECT_EQ(settings.value("port"), Json(1));
    settings.remove("port");
    EXPECT_EQ(settings.value("port"), Json(18080));
}

TEST_F(FileSettingsTest, writesAPrivatePrettyFileWithoutLeftovers) {
    EXPECT_EQ(settings.value("a"), std::nullopt);
    EXPECT_FALSE(fs::exists(file.parent_path())); // reading leaves no trace
    settings.set("b", 2);
    settings.set("a", "x");
    EXPECT_EQ(readFile(file), "{\n  \"a\": \"x\",\n  \"b\": 2\n}\n");
    EXPECT_EQ(fs::status(file).permissions(), fs::perms{0600});
    for (const auto& made : {file.parent_path(), folder / "config"})
        EXPECT_EQ(fs::status(made).permissions(), fs::perms{0700});
    expectFiles({"settings.json", "settings.json.lock"});
}

TEST_F(FileSettingsTest, seesWhatOthersWriteAtOnceAndLeavesAnUnchangedFileAlone) {
    settings.set("a", 1);
    for (int i = 2; i < 10; ++i) { // same size, same inode, same tick of the clock
        writeFile(file, "{\"a\": " + std::to_string(i) + "}");
        EXPECT_EQ(settings.value("a"), Json(i));
    }
    const auto old = fs::file_time_type::clock::now() - std::chrono::hours{1};
    fs::last_write_time(file, old);
    settings.set("a", 9);
    settings.remove("missing");
    EXPECT_EQ(fs::last_write_time(file), old);
    EXPECT_EQ(settings.value("a"), Json(9));
    FileSettings(file, log).set("a", 1);
    EXPECT_EQ(settings.value("a"), Json(1));
    fs::remove(file);
    EXPECT_EQ(settings.value("a"), std::nullopt);
}

TEST_F(FileSettingsTest, whoObservesHearsOfChangesByAnybodyUntilItsTokenGoes) {
    RunLoop loop(log);
    FileSettings others(file, log);
    int ended = 0;
    std::optional<Observation> other = settings.observe(loop, [&] { ++ended; });
    const Observation observation = settings.observe(loop, [&] { loop.stop(); });
    other.reset();
    for (FileSettings* writer : {&others, &settings}) {
        writer->set("key", writer == &others);
        loop.run();
        EXPECT_EQ(settings.value("key"), Json(writer == &others));
    }
    EXPECT_EQ(ended, 0);
}

TEST_F(FileSettingsTest, processesThatChangeDifferentKeysLoseNothing) {
    constexpr int processes = 4;
    constexpr int each = 100;
    std::vector<pid_t> children;
    for (int p = 0; p < processes; ++p) {
        children.push_back(fork());
        if (children.back() == 0) {
            for (int i = 0; i < each; ++i)
                settings.set("p" + std::to_string(p) + "-" + std::to_string(i), i);
            _exit(0);
        }
    }
    for (const pid_t child : children) {
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(Json::parse(readFile(file)).asObject()->size(), std::size_t{processes * each});
}

TEST_F(FileSettingsTest, brokenFilesStayAsTheyAreAndAreAFault) {
    settings.set("requireAuth", true);
    for (const char* text : {"", "{\"a\": 1", "[1]", "null", "{\"a\": \"\xFF\"}"}) {
        log.clear();
        writeFile(file, text);
        EXPECT_EQ(settings.value("requireAuth"), Json(true)) << text;
        EXPECT_EQ(FileSettings(file, log).value("requireAuth"), std::nullopt);
        EXPECT_TRUE(settings.fault().starts_with("Can't read the settings file " + file.string() + ": ")) << text;
        EXPECT_TRUE(settings.fault().ends_with("; mend it, or remove it to start with the defaults"));
        EXPECT_EQ(failure(), settings.fault());
        EXPECT_EQ(log.lines(), std::vector(2, settings.fault()));
        EXPECT_EQ(readFile(file), text);
        fs::remove(file);
        settings.set("requireAuth", true);
        EXPECT_EQ(settings.fault(), "");
    }
}

TEST_F(FileSettingsTest, whatCannotBeReadIsNotOverwrittenAndTheLastValuesStayInForce) {
    const std::string unreadable = "Can't read the settings file " + file.string() + ": ";
    settings.set("requireAuth", true);
    EXPECT_EQ(settings.value("requireAuth"), Json(true));
    fs::remove(file);
    fs::create_directories(file);
    for (int twice = 0; twice < 2; ++twice)
        EXPECT_EQ(settings.value("requireAuth"), Json(true));
    EXPECT_EQ(log.lines(), std::vector{unreadable + "Is a directory"});
    EXPECT_EQ(failure(), unreadable + "Is a directory");
    EXPECT_TRUE(fs::is_directory(file));

    fs::remove(file);
    EXPECT_EQ(settings.value("requireAuth"), std::nullopt);
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    EXPECT_EQ(failure(), unreadable + "Not a regular file");
    EXPECT_TRUE(fs::is_fifo(file));
}

TEST_F(FileSettingsTest, aFailedWriteKeepsFileAndValues) {
    settings.set("key", std::string(5000, 'x'));
    const std::string before = readFile(file);
    {
        const FullDisk full;
        EXPECT_EQ(failure(), "Can't write the settings file " + file.string() + ": File too large");
    }
    EXPECT_EQ(readFile(file), before);
    EXPECT_EQ(settings.value("more"), std::nullopt);
    expectFiles({"settings.json", "settings.json.lock"});
}

TEST_F(FileSettingsTest, aSymbolicLinkStaysOne) {
    fs::create_directories(file.parent_path());
    writeFile(folder / "elsewhere.json", "{\"a\":1}");
    fs::create_symlink(folder / "elsewhere.json", file);
    settings.set("b", 2);
    EXPECT_TRUE(fs::is_symlink(file));
    EXPECT_EQ(Json::parse(readFile(folder / "elsewhere.json")), Json(Json::Object{{"a", 1}, {"b", 2}}));
}

} // namespace
} // namespace quillorn
