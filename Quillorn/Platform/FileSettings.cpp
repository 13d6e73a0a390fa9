#include "Platform/AtomicFile.h"
#include "Platform/Clock.h"
#include "Platform/FileContent.h"
#include "Platform/FileWatch.h"
#include "Platform/QueuedObservers.h"
#include "Platform/SettingsStore.h"
#include "Platform/SystemLog.h"

#include <cerrno>
#include <fcntl.h>
#include <fmt/core.h>
#include <mutex>
#include <sys/stat.h>
#include <system_error>

namespace quillorn {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t largestFile = 16 * 1024 * 1024;

/// What tells one state of a file from another without reading it.
struct Fingerprint {
    dev_t device;
    ino_t inode;
    off_t size;
    Date modified;

    explicit Fingerprint(const struct stat& status)
        : device(status.st_dev),
          inode(status.st_ino),
          size(status.st_size),
          modified(modificationDate(status)) {}

    bool operator==(const Fingerprint&) const = default;
};

std::string wordsFor(int error) {
    return std::generic_category().message(error);
}

/// A fault that makes the file unreadable as it stands; not its content.
class Unreadable : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

std::string wordsFor(const std::exception& error) {
    const auto* systemError = dynamic_cast<const std::system_error*>(&error);
    return systemError != nullptr ? systemError->code().message() : error.what();
}

struct Content {
    std::string text;
    Fingerprint fingerprint;
};

/// Absent when there is no file.
std::optional<Content> readContent(const fs::path& file) {
    // Without waiting, since a pipe in its place would wait for a writer for ever.
    const FileDescriptor opened(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!opened) {
        if (errno == ENOENT)
            return std::nullopt;
        throw Unreadable(wordsFor(errno));
    }
    struct stat status{};
    if (::fstat(opened.number(), &status) != 0)
        throw Unreadable(wordsFor(errno));
    if (!S_ISREG(status.st_mode))
        throw Unreadable(S_ISDIR(status.st_mode) ? wordsFor(EISDIR) : "Not a regular file");
    Content content{{}, Fingerprint(status)};
    char buffer[16 * 1024];
    while (const ssize_t count = ::read(opened.number(), buffer, sizeof buffer)) {
        if (count > 0)
            content.text.append(buffer, static_cast<std::size_t>(count));
        else if (errno != EINTR)
            throw Unreadable(wordsFor(errno));
        if (content.text.size() > largestFile)
            throw Unreadable(wordsFor(EFBIG));
    }
    return content;
}

/// Throws Unreadable when the text is no JSON object.
Json::Object parseObject(const std::string& text) {
    constexpr const char* advice = "mend it, or remove it to start with the defaults";
    try {
        Json value = Json::parse(text);
        if (Json::Object* object = value.asObject())
            return std::move(*object);
    } catch (const JsonError& error) {
        throw Unreadable(fmt::format("{}; {}", error.what(), advice));
    }
    throw Unreadable(fmt::format("it is no JSON object; {}", advice));
}

} // namespace

struct FileSettings::State {
    State(fs::path path, SystemLog& systemLog) : file(std::move(path)), log(systemLog) {}

    fs::path lockFile() const { return file.string() + ".lock"; }
    void refresh();
    bool isCurrent() const;
    void load();
    /// Makes the stored object be what `edit` turns it into; `edit` says whether it changed anything.
    void change(const std::function<bool(Json::Object&)>& edit);

    const fs::path file;
    SystemLog& log;
    std::mutex mutex;
    Json::Object defaults;
    Json::Object values;
    /// Of the state that `values` came from; absent when the next access must read.
    std::optional<Fingerprint> fingerprint;
    /// Why the file can't be read; empty when it can.
    std::string fault;
    QueuedObservers observers;
    /// Once somebody observes.
    std::unique_ptr<FileWatch> watch;
};

/// A file that changed within the resolution of its time stamp can't be told from its former state, so a fresh one
/// is read again.
bool FileSettings::State::isCurrent() const {
    constexpr std::chrono::milliseconds stampResolution{50};
    struct stat status{};
    return fingerprint && ::stat(file.c_str(), &status) == 0 && Fingerprint(status) == *fingerprint &&
           std::chrono::abs(SystemClock().now() - fingerprint->modified) > stampResolution;
}

/// Brings `values` up to date. Throws Unreadable, and leaves them as they were.
void FileSettings::State::load() {
    fingerprint.reset();
    const auto content = readContent(file);
    values = content ? parseObject(content->text) : Json::Object{};
    if (content)
        fingerprint = content->fingerprint;
    fault.clear();
}

/// When the file can't be read the last values that could be stay in force: a process that runs short of descriptors
/// must not forget, say, that it asks for keys.
void FileSettings::State::refresh() {
    if (isCurrent())
        return;
    try {
        load();
    } catch (const std::exception& error) {
        const std::string line = fmt::format("Can't read the settings file {}: {}", file.string(), wordsFor(error));
        if (std::exchange(fault, line) != line)
            log.log(line);
    }
}

void FileSettings::State::change(const std::function<bool(Json::Object&)>& edit) {
    const auto fail = [&](const char* verb, const std::exception& error) {
        throw std::runtime_error(
            fmt::format("Can't {} the settings file {}: {}", verb, file.string(), wordsFor(error)));
    };
    try {
        createPrivateFolder(file.parent_path());
        const FileLock lock(lockFile());
        load();
        Json::Object changed = values;
        if (!edit(changed))
            return;
        replaceFile(file, Json(changed).text(Json::Style::pretty) + "\n", Links::followed);
        values = std::move(changed);
        fingerprint.reset();
    } catch (const Unreadable& error) {
        fail("read", error);
    } catch (const std::system_error& error) {
        fail("write", error);
    }
}

FileSettings::FileSettings(fs::path file, SystemLog& log) : m_state(std::make_unique<State>(std::move(file), log)) {}
FileSettings::~FileSettings() = default;

std::optional<Json> FileSettings::storedValue(std::string_view key) const {
    const std::lock_guard lock(m_state->mutex);
    m_state->refresh();
    const auto found = m_state->values.find(key);
    return found == m_state->values.end() ? std::nullopt : std::optional(found->second);
}

std::string FileSettings::fault() const {
    const std::lock_guard lock(m_state->mutex);
    m_state->refresh();
    return m_state->fault;
}

std::optional<Json> FileSettings::value(std::string_view key) const {
    if (auto stored = storedValue(key))
        return stored;
    const std::lock_guard lock(m_state->mutex);
    const auto found = m_state->defaults.find(key);
    return found == m_state->defaults.end() ? std::nullopt : std::optional(found->second);
}

void FileSettings::set(std::string_view key, Json value) {
    (void)value.text(); // refuses what JSON can't say before anything is touched
    const std::lock_guard lock(m_state->mutex);
    m_state->change([&](Json::Object& values) {
        const auto found = values.find(key);
        if (found != values.end() && found->second == value)
            return false;
        values.insert_or_assign(std::string(key), std::move(value));
        return true;
    });
}

void FileSettings::remove(std::string_view key) {
    const std::lock_guard lock(m_state->mutex);
    m_state->change([&](Json::Object& values) {
        const auto found = values.find(key);
        if (found == values.end())
            return false;
        values.erase(found);
        return true;
    });
}

void FileSettings::registerDefaults(const Json::Object& defaults) {
    const std::lock_guard lock(m_state->mutex);
    for (const auto& [key, value] : defaults)
        m_state->defaults.insert_or_assign(key, value);
}

Observation FileSettings::observe(MainQueue& queue, std::function<void()> handler) {
    Observation observation = m_state->observers.add(queue, std::move(handler));
    const std::lock_guard lock(m_state->mutex);
    if (m_state->watch)
        return observation;
    try {
        createPrivateFolder(m_state->file.parent_path());
        m_state->watch = watchFile(m_state->file, [state = m_state.get()] { state->observers.tell(); });
    } catch (const std::system_error& error) {
        m_state->log.log(fmt::format("Settings are not watched: {}", error.what()));
    }
    return observation;
}

} // namespace quillorn
