#include "Platform/VdirReminderStore.h"

#include "Platform/AtomicFile.h"
#include "Platform/Clock.h"
#include "Platform/FileContent.h"
#include "Platform/SystemLog.h"
#include "Platform/Text.h"
#include "Platform/ToDoFile.h"
#include "Platform/UTF8.h"

#include <algorithm>
#include <fmt/core.h>
#include <sys/stat.h>
#include <system_error>
#include <tuple>
#include <unistd.h>

namespace quillorn {

namespace fs = std::filesystem;

namespace {

/// Far beyond a to-do with a picture in it.
constexpr off_t maximumSize = 16 * 1024 * 1024;
constexpr std::size_t maximumTitle = 1024;
/// How often an edit begins again when another program gets in between.
constexpr int attempts = 3;

/// What tells one version of a file from the next. Programs that copy can put back the time of a change of content, but
/// not that of the last change of any kind.
using Version = std::tuple<dev_t, ino_t, off_t, Date>;

Version versionOf(const struct stat& status) {
    return {status.st_dev, status.st_ino, status.st_size, statusChangeDate(status)};
}

bool isListName(std::string_view name) {
    return !name.empty() && !name.starts_with('.') && name.find_first_of("/\n") == std::string_view::npos;
}

bool isToDoFileName(std::string_view name) {
    return isListName(name) && name.ends_with(".ics");
}

/// One folder or file of a list, and which of several to-dos in the file: its UID, or its number where it has none.
struct Place {
    std::string list;
    std::string file;
    std::string todo;
};

std::string identifierOf(const std::string& list, const std::string& file, const std::string& todo) {
    return list + '/' + file + (todo.empty() ? "" : '\n' + todo);
}

std::optional<Place> placeOf(const std::string& identifier) {
    const std::size_t slash = identifier.find('/');
    if (slash == std::string::npos)
        return std::nullopt;
    const std::size_t line = std::min(identifier.find('\n', slash), identifier.size());
    Place place{identifier.substr(0, slash), identifier.substr(slash + 1, line - slash - 1),
                identifier.substr(std::min(line + 1, identifier.size()))};
    if (!isListName(place.list) || !isToDoFileName(place.file))
        return std::nullopt;
    return place;
}

/// Which of the file's to-dos it is; empty for the only one.
std::string keyOf(const std::vector<ToDo>& todos, std::size_t index) {
    if (todos.size() == 1)
        return {};
    return todos[index].uid.empty() ? std::to_string(index + 1) : todos[index].uid;
}

std::string titleOf(const fs::path& folder) {
    std::string title;
    try {
        const FileDescriptor file = openFile(folder / "displayname");
        title.resize(maximumTitle);
        title.resize(static_cast<std::size_t>(std::max<ssize_t>(::read(file.number(), title.data(), title.size()), 0)));
    } catch (const std::system_error&) {
        title.clear(); // most folders have none
    }
    title = trimWhitespaceAndNewlines(repairedUTF8(title));
    return title.empty() ? repairedUTF8(folder.filename().string()) : title;
}

/// Throws std::system_error, and ToDoFileError for a file that is too large.
std::string contentOf(const FileDescriptor& file, const struct stat& status) {
    if (status.st_size > maximumSize)
        throw ToDoFileError("it is too large");
    return readWhole(file, static_cast<std::size_t>(status.st_size));
}

} // namespace

/// What is known of a file.
struct VdirReminderStore::File {
    /// Absent where it could not be told.
    std::optional<Version> version;
    std::vector<ToDo> todos;
    bool isThere = true;
};

/// A to-do as it stands in its file at the moment.
struct VdirReminderStore::Entry {
    fs::path path;
    std::string content;
    Version version;
    ToDo todo;
};

VdirReminderStore::VdirReminderStore(std::function<fs::path()> root, std::function<std::string()> timeZone,
                                     const Clock& clock, SystemLog& log)
    : m_root(std::move(root)),
      m_timeZone(std::move(timeZone)),
      m_clock(clock),
      m_log(log) {}

VdirReminderStore::~VdirReminderStore() = default;

bool VdirReminderStore::requestFullAccess() {
    const fs::path root = m_root();
    std::error_code error;
    return fs::is_directory(root, error) && ::access(root.c_str(), R_OK | X_OK) == 0;
}

std::vector<ReminderList> VdirReminderStore::lists() {
    std::vector<ReminderList> found;
    try {
        for (const fs::directory_entry& entry : fs::directory_iterator(m_root())) {
            std::error_code error;
            const std::string name = entry.path().filename().string();
            if (isListName(name) && entry.is_directory(error))
                found.push_back({name, titleOf(entry.path())});
        }
    } catch (const fs::filesystem_error& error) {
        throw ReminderError(fmt::format("Can't read the folder of reminders: {}", error.code().message()));
    }
    std::sort(found.begin(), found.end(), [](const ReminderList& a, const ReminderList& b) {
        return std::tie(a.title, a.identifier) < std::tie(b.title, b.identifier);
    });
    return found;
}

std::vector<Reminder> VdirReminderStore::openReminders(std::span<const ReminderList> lists) {
    std::vector<Reminder> found;
    const std::lock_guard lock(m_mutex);
    if (const std::string zone = m_timeZone(); !m_zone || m_zone->name() != zone) {
        m_zone = ZoneRules(zone);
        m_known.clear();
    }
    for (const ReminderList& list : lists)
        if (isListName(list.identifier))
            readList(list, found);
    return found;
}

void VdirReminderStore::readList(const ReminderList& list, std::vector<Reminder>& into) {
    const fs::path folder = m_root() / list.identifier;
    Files& files = m_known[folder];
    for (auto& [name, file] : files)
        file.isThere = false;
    try {
        for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
            const std::string name = entry.path().filename().string();
            std::error_code error;
            if (isToDoFileName(name) && entry.is_regular_file(error))
                refresh(entry.path(), files[name]);
        }
    } catch (const fs::filesystem_error& error) {
        m_log.log(fmt::format("Reminders: can't read {}: {}", folder.string(), error.code().message()));
    }
    std::erase_if(files, [](const auto& each) { return !each.second.isThere; });
    for (const auto& [name, file] : files)
        for (std::size_t i = 0; i < file.todos.size(); ++i)
            if (const ToDo& todo = file.todos[i]; todo.isOpen)
                into.push_back({todo.uid, identifierOf(list.identifier, name, keyOf(file.todos, i)), todo.summary,
                                todo.description, todo.due, list.title});
}

void VdirReminderStore::refresh(const fs::path& path, File& file) {
    struct stat status{};
    file.isThere = true;
    // One that is new need not be asked.
    if (file.version && ::stat(path.c_str(), &status) == 0 && versionOf(status) == file.version)
        return;
    file = {};
    try {
        const FileDescriptor opened = openFile(path, status);
        file.version = versionOf(status); // which is read once, also when that fails
        file.todos = readToDos(contentOf(opened, status), *m_zone);
    } catch (const std::exception& error) {
        if (!file.version && ::stat(path.c_str(), &status) == 0)
            file.version = versionOf(status);
        m_log.log(fmt::format("Reminders: {} was left out: {}", path.string(), error.what()));
    }
}

/// Throws std::system_error and ToDoFileError.
std::optional<VdirReminderStore::Entry> VdirReminderStore::find(const std::string& identifier) const {
    const std::optional<Place> place = placeOf(identifier);
    if (!place)
        return std::nullopt;
    fs::path path = m_root() / place->list / place->file;
    struct stat status{};
    const FileDescriptor file = openFile(path, status);
    std::string content = contentOf(file, status);
    std::vector<ToDo> todos = readToDos(content, ZoneRules(m_timeZone()));
    for (std::size_t i = 0; i < todos.size(); ++i)
        if (keyOf(todos, i) == place->todo || (!place->todo.empty() && todos[i].uid == place->todo))
            return Entry{std::move(path), std::move(content), versionOf(status), std::move(todos[i])};
    return std::nullopt;
}

std::optional<Reminder> VdirReminderStore::reminder(const std::string& identifier) {
    try {
        const std::optional<Entry> entry = find(identifier);
        if (!entry)
            return std::nullopt;
        const ToDo& todo = entry->todo;
        return Reminder{todo.uid,         identifier, todo.summary,
                        todo.description, todo.due,   titleOf(entry->path.parent_path())};
    } catch (const std::exception&) {
        return std::nullopt; // what can't be read any more is gone
    }
}

void VdirReminderStore::complete(const std::string& identifier) {
    try {
        for (int i = 0; i < attempts; ++i) {
            const std::optional<Entry> entry = find(identifier);
            if (!entry)
                throw ReminderError("The reminder is gone");
            if (!entry->todo.isOpen)
                return;
            if (entry->todo.isRecurring)
                throw ReminderError("The reminder comes again, by a rule of its own program");
            const std::string edited = completeToDo(entry->content, entry->todo, m_clock.now());
            struct stat status{};
            if (::stat(entry->path.c_str(), &status) != 0 || versionOf(status) != entry->version)
                continue; // another program was faster
            return replaceFile(entry->path, edited, Links::followed, FileMode::asBefore);
        }
    } catch (const std::system_error& error) {
        throw ReminderError(error.code().message());
    } catch (const ToDoFileError& error) {
        throw ReminderError(error.what());
    }
    throw ReminderError("Another program keeps changing the file");
}

} // namespace quillorn
