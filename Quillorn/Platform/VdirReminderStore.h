#pragma once

#include "Platform/ReminderStore.h"
#include "Platform/ZoneRules.h"

#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

namespace quillorn {

class Clock;
class SystemLog;

/// Reminders as folders of to-do lists ("vdir"): below the root a folder for each list, named by its file "displayname"
/// or by its own name, and in it a file "*.ics" for each to-do. Files that begin with a dot are other programs' own.
///
/// What was read is kept, and a file read again only when its size, its time or the file itself has changed. A file
/// that can't be read costs itself alone, and a line in the log for each of its versions.
class VdirReminderStore final : public ReminderStore {
  public:
    /// `root` and `timeZone` are asked each time, for the folder and for the zone of dates that have none.
    VdirReminderStore(std::function<std::filesystem::path()> root, std::function<std::string()> timeZone,
                      const Clock& clock, SystemLog& log);
    ~VdirReminderStore() override;

    bool requestFullAccess() override;
    std::vector<ReminderList> lists() override;
    std::vector<Reminder> openReminders(std::span<const ReminderList> lists) override;
    std::optional<Reminder> reminder(const std::string& identifier) override;
    void complete(const std::string& identifier) override;

  private:
    struct File;
    struct Entry;
    using Files = std::map<std::string, File, std::less<>>;

    void readList(const ReminderList& list, std::vector<Reminder>& into);
    void refresh(const std::filesystem::path& path, File& file);
    std::optional<Entry> find(const std::string& identifier) const;

    const std::function<std::filesystem::path()> m_root;
    const std::function<std::string()> m_timeZone;
    const Clock& m_clock;
    SystemLog& m_log;
    std::mutex m_mutex; // guards the next
    /// In which what is known was read.
    std::optional<ZoneRules> m_zone;
    /// By the folder of the list, and the name.
    std::map<std::filesystem::path, Files> m_known;
};

} // namespace quillorn
