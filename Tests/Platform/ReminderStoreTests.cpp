#include "Platform/VdirReminderStore.h"
#include "Support/ChildProcess.h"
#include "Support/FakeClock.h"
#include "Support/FakeReminders.h"
#include "Support/RecordingLog.h"
#include "Support/TemporaryFolder.h"

#include <fmt/core.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace quillorn {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string fileOf(const std::string& uid, const std::string& title, const std::string& more = "") {
    return fmt::format("BEGIN:VCALENDAR\nBEGIN:VTODO\nUID:{}\nSUMMARY:{}\n{}END:VTODO\nEND:VCALENDAR\n", uid, title,
                       more);
}

/// Folders as a synchroniser makes them.
struct RealReminders {
    RealReminders() { fs::create_directory(root()); }
    fs::path root() const { return folder / "calendars"; }
    void write(const std::string& name, const std::string& content) {
        fs::create_directories((root() / name).parent_path());
        writeFile(root() / name, content);
    }
    void add(const std::string& list, const std::string& uid, const std::string& title, bool isRecurring = false) {
        write(list + "/" + uid + ".ics", fileOf(uid, title, isRecurring ? "RRULE:FREQ=DAILY\n" : ""));
    }
    void remove(const std::string& list, const std::string& uid) { fs::remove(root() / list / (uid + ".ics")); }
    void deny() { fs::rename(root(), folder / "elsewhere"); }

    TemporaryFolder folder;
    FakeClock clock;
    RecordingLog log;
    std::string zone = "Europe/Berlin";
    VdirReminderStore store{[this] { return root(); }, [this] { return zone; }, clock, log};
};

struct MadeUpReminders {
    void add(const std::string& list, const std::string& uid, const std::string& title, bool isRecurring = false) {
        store.add(list, uid, title);
        store.items.back().isRecurring = isRecurring;
    }
    void remove(const std::string& list, const std::string& uid) {
        std::erase_if(store.items, [&](const auto& each) {
            return each.reminder.listTitle == list && each.reminder.calendarItemExternalIdentifier == uid;
        });
    }
    void deny() { store.isGranted = false; }

    FakeReminders store;
};

std::vector<std::string> titlesOf(ReminderStore& store, const std::string& list = "") {
    std::vector<ReminderList> lists = store.lists();
    std::erase_if(lists, [&](const ReminderList& each) { return !list.empty() && each.title != list; });
    std::vector<std::string> titles;
    for (const Reminder& each : store.openReminders(lists))
        titles.push_back(each.title);
    return titles;
}

/// What holds for every source of reminders.
template <typename Source>
class ReminderContract : public testing::Test {
  protected:
    Source source;
};

using Sources = testing::Types<RealReminders, MadeUpReminders>;
TYPED_TEST_SUITE(ReminderContract, Sources);

TYPED_TEST(ReminderContract, listsReadsFindsAndCompletes) {
    ReminderStore& store = this->source.store;
    EXPECT_TRUE(store.requestFullAccess());
    EXPECT_THAT(store.lists(), IsEmpty());
    this->source.add("Home", "a", "Milk");
    this->source.add("Home", "b", "Plants", true);
    this->source.add("Work", "c", "Offer");
    EXPECT_THAT(titlesOf(store), ElementsAre("Milk", "Plants", "Offer"));
    EXPECT_THAT(titlesOf(store, "Work"), ElementsAre("Offer"));

    const std::vector<ReminderList> home{store.lists().at(0)};
    const std::vector<Reminder> open = store.openReminders(home);
    const std::string milk = open.at(0).calendarItemIdentifier;
    EXPECT_EQ(open[0].calendarItemExternalIdentifier, "a");
    EXPECT_EQ(store.reminder(milk)->listTitle, "Home");
    EXPECT_FALSE(store.reminder(milk + "x"));
    store.complete(milk);
    EXPECT_EQ(store.reminder(milk)->title, "Milk");
    EXPECT_NO_THROW(store.complete(milk));
    EXPECT_THROW(store.complete(open.at(1).calendarItemIdentifier), ReminderError);
    EXPECT_THAT(titlesOf(store), ElementsAre("Plants", "Offer"));

    this->source.remove("Home", "a");
    EXPECT_FALSE(store.reminder(milk));
    EXPECT_THROW(store.complete(milk), ReminderError);
    this->source.deny();
    EXPECT_FALSE(store.requestFullAccess());
    EXPECT_THROW(store.lists(), ReminderError);
}

TEST(VdirReminderStore, takesFoldersAsTheyAre) {
    RealReminders source;
    source.write("x-1/displayname", "Work\n");
    source.write("x-2/displayname", "Work");
    source.write("x-1/a.ics", fileOf("a", "First"));
    source.write("x-2/a.ics", fileOf("b", "Second"));
    source.write("x-2/.a.ics", fileOf("c", "of a writer"));
    source.write("x-2/note.txt", fileOf("d", "no calendar file"));
    source.write("x-2/broken.ics", "BEGIN:VCALENDAR\nBEGIN:VTODO\n");
    source.write(".hidden/a.ics", fileOf("e", "hidden"));
    source.write("file", "");
    fs::create_directory(source.root() / "x-2/folder.ics");
    source.write("x-3/two.ics", fileOf("f", "One") + fileOf("g", "Two") + fileOf("", "No id"));
    source.write("x-3/displayname", "  \n");
    for (int pass = 0; pass < 2; ++pass) {
        EXPECT_THAT(titlesOf(source.store, "Work"), ElementsAre("First", "Second"));
        EXPECT_THAT(titlesOf(source.store, "x-3"), ElementsAre("One", "Two", "No id"));
    }
    // One line for the broken file, though it was met twice.
    EXPECT_THAT(source.log.lines(), ElementsAre(HasSubstr("broken.ics was left out: a component has no end")));

    const std::vector<ReminderList> three{{"x-3", "Three"}, {"../x-3", "outside"}, {"x-4", "gone"}};
    const std::vector<Reminder> several = source.store.openReminders(three);
    ASSERT_EQ(several.size(), 3U);
    source.store.complete(several[1].calendarItemIdentifier);
    source.store.complete(several[2].calendarItemIdentifier);
    EXPECT_THAT(titlesOf(source.store, "x-3"), ElementsAre("One"));
    for (const char* bad :
         {"", "x-3", "x-3/two.txt", "../calendars/x-3/two.ics", "x-3/../x-1/a.ics", "x-3/two.ics", "x-3/two.ics\nz"})
        EXPECT_FALSE(source.store.reminder(bad)) << bad;
}

TEST(VdirReminderStore, readsTimesInTheZoneWhereTheUserIs) {
    RealReminders source;
    source.write("Home/a.ics", fileOf("a", "Milk", "DUE:20260115T120000\n"));
    const std::vector<ReminderList> lists = source.store.lists();
    for (const auto& [zone, due] :
         {std::pair("Europe/Berlin", "2026-01-15T11:00:00Z"), {"Asia/Tokyo", "2026-01-15T03:00:00Z"}}) {
        source.zone = zone;
        const Reminder found = source.store.openReminders(lists).at(0);
        EXPECT_EQ(formatISO8601(found.dueDate.value()), due);
        EXPECT_EQ(source.store.reminder(found.calendarItemIdentifier)->dueDate, found.dueDate);
    }
}

TEST(VdirReminderStore, keepsTheModeAndTakesTheLatestContent) {
    RealReminders source;
    source.add("Home", "a", "Milk");
    const fs::path file = source.root() / "Home/a.ics";
    ::chmod(file.c_str(), 0644);
    EXPECT_THAT(titlesOf(source.store), ElementsAre("Milk"));
    source.write("Home/a.ics", fileOf("a", "Oat milk"));
    source.store.complete("Home/a.ics");
    EXPECT_THAT(readFile(file), HasSubstr("SUMMARY:Oat milk\nSTATUS:COMPLETED\nCOMPLETED:20260115T120000Z\n"));
    EXPECT_EQ(fs::status(file).permissions(), fs::perms(0644));
    EXPECT_THAT(titlesOf(source.store), IsEmpty());
    // The folder holds nothing else.
    EXPECT_EQ(std::distance(fs::directory_iterator(file.parent_path()), {}), 1);
}

TEST(VdirReminderStore, getsAlongWithAnotherProgramForToDos) {
    RealReminders source;
    source.write("config.py", fmt::format("path = \"{0}/*\"\ncache_path = \"{0}/.cache\"\ndefault_list = \"home\"\n"
                                          "date_format = \"%Y-%m-%d\"\ntime_format = \"%H:%M\"\n",
                                          source.root().string()));
    fs::create_directory(source.root() / "home");
    const auto todoman = [&](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"--config", source.root() / "config.py"});
        ChildProcess process({"/usr/bin/todoman", arguments});
        EXPECT_EQ(process.wait(), 0) << process.errors();
        return process.output();
    };
    todoman({"new", "--due", "2026-02-01 10:00", "Write the offer"});
    todoman({"new", "Buy milk"});
    EXPECT_THAT(titlesOf(source.store), testing::UnorderedElementsAre("Write the offer", "Buy milk"));
    const std::vector<ReminderList> home{{"home", "home"}};
    for (const Reminder& each : source.store.openReminders(home))
        if (each.title == "Buy milk")
            source.store.complete(each.calendarItemIdentifier);
    EXPECT_THAT(todoman({"list"}), AllOf(HasSubstr("Write the offer"), Not(HasSubstr("Buy milk"))));
    EXPECT_THAT(todoman({"list", "--status", "COMPLETED"}),
                AllOf(HasSubstr("[X]"), HasSubstr("Buy milk"), HasSubstr("(100%)")));
    todoman({"done", "1"});
    EXPECT_THAT(titlesOf(source.store), IsEmpty());
}

} // namespace
} // namespace quillorn
