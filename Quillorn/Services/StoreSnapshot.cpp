#include "Services/StoreSnapshot.h"

#include "Platform/AtomicFile.h"
#include "Platform/FileContent.h"
#include "Platform/LZFSE.h"
#include "Platform/TemporaryDirectory.h"
#include "Services/BackupError.h"

#include <fmt/core.h>
#include <memory>
#include <optional>
#include <sqlite3.h>
#include <string_view>
#include <system_error>

namespace quillorn {

namespace fs = std::filesystem;

namespace {

/// A day of minutes.
constexpr int mostAttempts = 24 * 60;

/// A connection that can't write, with SQLite's own rules for waiting and closing. It can't checkpoint either, so it
/// needs no part in the store's write lock.
class ReadOnlyConnection {
  public:
    explicit ReadOnlyConnection(const fs::path& file)
        : m_result(sqlite3_open_v2(file.c_str(), &m_handle, SQLITE_OPEN_READONLY, nullptr)) {}
    ~ReadOnlyConnection() { sqlite3_close(m_handle); }
    ReadOnlyConnection(const ReadOnlyConnection&) = delete;
    ReadOnlyConnection& operator=(const ReadOnlyConnection&) = delete;

    bool isOpen() const { return m_result == SQLITE_OK; }
    sqlite3* handle() const { return m_handle; }
    std::string lastError() const { return m_handle != nullptr ? sqlite3_errmsg(m_handle) : "unknown"; }

  private:
    sqlite3* m_handle = nullptr;
    int m_result;
};

/// Runs `work`; what the system refuses becomes a BackupError: "`words`: No space left on device".
template <class Work>
auto explained(const std::string& words, const Work& work) {
    try {
        return work();
    } catch (const std::system_error& error) {
        throw BackupError(fmt::format("{}: {}", words, error.code().message()));
    } catch (const NotCompressedError& error) {
        throw BackupError(fmt::format("{}: it is no backup: {}", words, error.what()));
    } catch (const CompressionError& error) {
        throw BackupError(fmt::format("{}: {}", words, error.what()));
    }
}

std::unique_ptr<TemporaryDirectory> makeTemporaryDirectory(RandomSource& random) {
    return explained("Can't make a temporary folder", [&] { return std::make_unique<TemporaryDirectory>(random); });
}

std::string sqlText(std::string_view text) {
    std::string literal = "'";
    for (const char character : text)
        literal.append(character == '\'' ? 2 : 1, character);
    return literal + "'";
}

ByteBuffer compressedContent(const fs::path& file) {
    return explained(fmt::format("Can't compress {}", file.string()),
                     [&] { return compressLZFSE(readWhole(openFile(file))); });
}

bool holds(const fs::path& file, std::string_view bytes) {
    std::error_code unknown;
    return fs::is_regular_file(fs::symlink_status(file, unknown)) && fs::file_size(file, unknown) == bytes.size() &&
           readWhole(openFile(file)) == bytes;
}

/// Under the first name that is free, or has these bytes already. Throws std::system_error.
fs::path keep(std::string_view bytes, const fs::path& folder, const SnapshotNames& names) {
    for (int attempt = 0; attempt < mostAttempts; ++attempt)
        if (fs::path file = folder / names(attempt); holds(file, bytes) || createFile(file, bytes))
            return file;
    throw std::system_error(std::make_error_code(std::errc::file_exists));
}

/// What a query returns first; absent where that fails, or is null.
std::optional<std::string> singleValue(const fs::path& file, const char* sql) {
    const ReadOnlyConnection connection(file);
    sqlite3_stmt* statement = nullptr;
    if (!connection.isOpen() || sqlite3_prepare_v2(connection.handle(), sql, -1, &statement, nullptr) != SQLITE_OK)
        return std::nullopt;
    const std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> owner(statement, sqlite3_finalize);
    if (sqlite3_step(statement) != SQLITE_ROW)
        return std::nullopt;
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
    return text != nullptr ? std::optional<std::string>(text) : std::nullopt;
}

} // namespace

fs::path snapshotStore(const fs::path& store, const fs::path& folder, const SnapshotNames& names,
                       RandomSource& random) {
    const std::string cannotWrite = fmt::format("Can't write {}", (folder / names(0)).string());
    explained(cannotWrite, [&] { createPrivateFolder(folder); });
    const auto temporary = makeTemporaryDirectory(random);
    const fs::path copy = *temporary / "Quillorn.store";

    const ReadOnlyConnection connection(store);
    if (!connection.isOpen())
        throw BackupError("Could not open store: " + connection.lastError());
    sqlite3_busy_timeout(connection.handle(), 5000);
    const std::string statement = "VACUUM INTO " + sqlText(copy.string());
    if (sqlite3_exec(connection.handle(), statement.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
        throw BackupError("Snapshot failed: " + connection.lastError());
    if (!isHealthySnapshot(copy))
        throw BackupError("Snapshot failed integrity check — backup aborted");

    const ByteBuffer compressed = compressedContent(copy);
    return explained(cannotWrite, [&] { return keep(compressed.view(), folder, names); });
}

bool isHealthySnapshot(const fs::path& file) {
    return singleValue(file, "PRAGMA integrity_check;") == "ok";
}

void unpackBackup(const fs::path& backup, const fs::path& target) {
    const auto decompressed = explained(fmt::format("Can't read {}", backup.string()), [&] {
        const std::uintmax_t room = fs::space(target.parent_path()).available;
        return decompressLZFSE(readWhole(openFile(backup)), room);
    });
    explained(fmt::format("Can't write {}", target.string()), [&] { replaceFile(target, decompressed.view()); });
    // A file of no bytes is a sound database; to restore it would be to delete everything.
    if (!isHealthySnapshot(target) || singleValue(target, "SELECT count(*) FROM sqlite_schema") == "0")
        throw BackupError("Backup file failed integrity check — restore cancelled");
}

} // namespace quillorn
