#include "Reminders/ReminderMemory.h"

#include "Models/Settings.h"
#include "Platform/AtomicFile.h"
#include "Platform/Clock.h"
#include "Platform/FileContent.h"
#include "Platform/Json.h"
#include "Platform/SystemLog.h"

#include <algorithm>
#include <fmt/core.h>
#include <sys/stat.h>
#include <system_error>
#include <tuple>

namespace quillorn {

namespace fs = std::filesystem;

namespace {

using Version = std::tuple<ino_t, off_t, Date>;

Version versionOf(const struct stat& status) {
    return {status.st_ino, status.st_size, statusChangeDate(status)};
}

/// All or nothing: a member that is no text makes it empty.
ReminderLedger ledgerOf(const Json* json) {
    ReminderLedger ledger;
    const Json::Object* members = json ? json->asObject() : nullptr;
    if (!members)
        return ledger;
    for (const auto& [id, task] : *members) {
        if (!task.asString())
            return {};
        ledger.emplace_hint(ledger.end(), id, *task.asString());
    }
    return ledger;
}

std::optional<SkippedReminder> skippedOf(const Json& json) {
    const auto text = [&](const char* key) {
        const Json* member = json.find(key);
        return member ? member->asString() : nullptr;
    };
    const std::string* fingerprint = text("fingerprint");
    const std::string* reason = text("reason");
    const std::string* title = text("title");
    const std::string* listName = text("listName");
    const std::string* dateText = text("date");
    const std::optional<Date> date = dateText ? parseISO8601(*dateText) : std::nullopt;
    if (!fingerprint || !reason || !title || !listName || !date)
        return std::nullopt;
    std::optional<UUID> project;
    if (const Json* id = json.find("projectID"); id && !id->isNull()) {
        project = id->asString() ? UUID::parse(*id->asString()) : std::nullopt;
        if (!project)
            return std::nullopt;
    }
    return SkippedReminder{*fingerprint, *reason, project, *title, *listName, *date};
}

SkippedReminders skippedRemindersOf(const Json* json) {
    SkippedReminders skipped;
    const Json::Object* members = json ? json->asObject() : nullptr;
    if (!members)
        return skipped;
    for (const auto& [id, entry] : *members) {
        auto one = skippedOf(entry);
        if (!one)
            return {};
        skipped.emplace_hint(skipped.end(), id, std::move(*one));
    }
    return skipped;
}

void write(JsonWriter& writer, const char* key, const ReminderLedger& ledger) {
    writer.key(key);
    writer.beginObject();
    for (const auto& [id, task] : ledger) {
        writer.key(id);
        writer.string(task);
    }
    writer.endObject();
}

void write(JsonWriter& writer, const SkippedReminders& skipped) {
    const auto member = [&](const char* key, std::string_view value) {
        writer.key(key);
        writer.string(value);
    };
    writer.key("skipped");
    writer.beginObject();
    for (const auto& [id, entry] : skipped) {
        writer.key(id);
        writer.beginObject();
        member("date", formatISO8601(entry.date));
        member("fingerprint", entry.fingerprint);
        member("listName", entry.listName);
        if (entry.projectID)
            member("projectID", entry.projectID->string());
        member("reason", entry.reason);
        member("title", entry.title);
        writer.endObject();
    }
    writer.endObject();
}

std::string textOf(const ReminderRecords& records) {
    std::string text = jsonText([&](JsonWriter& writer) {
        writer.beginObject();
        write(writer, "ledger", records.ledger);
        if (!records.pending.empty())
            write(writer, "pending", records.pending);
        write(writer, records.skipped);
        writer.endObject();
    });
    return text += '\n';
}

} // namespace

struct ReminderMemory::Known {
    Version version;
    std::shared_ptr<const ReminderRecords> records;
};

ReminderMemory::ReminderMemory(fs::path file, const Clock& clock, SystemLog& log)
    : m_file(std::move(file)),
      m_clock(clock),
      m_log(log) {}

ReminderMemory::~ReminderMemory() = default;

std::shared_ptr<const ReminderRecords> ReminderMemory::read() {
    const std::lock_guard lock(m_mutex);
    return readLocked();
}

std::shared_ptr<const ReminderRecords> ReminderMemory::readLocked() {
    struct stat status{};
    if (::stat(m_file.c_str(), &status) != 0 && errno == ENOENT)
        return std::make_shared<const ReminderRecords>();
    if (m_known && m_known->version == versionOf(status))
        return m_known->records;
    const FileDescriptor file = openFile(m_file, status);
    const std::string text = readWhole(file, static_cast<std::size_t>(status.st_size));
    try {
        const Json json = Json::parse(text);
        if (!json.asObject())
            return setAside("it is no JSON object");
        auto records = std::make_shared<const ReminderRecords>(ReminderRecords{
            ledgerOf(json.find("ledger")), ledgerOf(json.find("pending")), skippedRemindersOf(json.find("skipped"))});
        m_known = std::make_unique<Known>(Known{versionOf(status), std::move(records)});
        return m_known->records;
    } catch (const JsonError& error) {
        return setAside(error.what());
    }
}

std::shared_ptr<const ReminderRecords> ReminderMemory::setAside(const char* reason) {
    std::string date = formatISO8601(m_clock.now());
    std::erase(date, ':'); // as file names have it everywhere
    const fs::path aside = fmt::format("{}.broken-{}", m_file.string(), date);
    fs::rename(m_file, aside);
    m_log.log(fmt::format("Reminders: {} can't be read ({}); it is kept as {}", m_file.string(), reason,
                          aside.filename().string()));
    return std::make_shared<const ReminderRecords>();
}

void ReminderMemory::update(const std::function<void(ReminderRecords&)>& change) {
    const std::lock_guard lock(m_mutex);
    createPrivateFolder(m_file.parent_path());
    const FileLock fileLock(m_file.string() + "-lock");
    const auto former = readLocked();
    auto records = std::make_shared<ReminderRecords>(*former);
    change(*records);
    if (*records == *former)
        return;
    replaceFile(m_file, textOf(*records));
    struct stat status{};
    m_known.reset();
    if (::stat(m_file.c_str(), &status) == 0)
        m_known = std::make_unique<Known>(Known{versionOf(status), std::move(records)});
}

fs::path reminderRecordsFile(const Paths& paths) {
    return settingsFile(paths).parent_path() / "reminders.json";
}

} // namespace quillorn
