#include "Store/StoreCheck.h"

#include "Platform/TemporaryDirectory.h"

#include <fmt/core.h>
#include <memory>
#include <optional>
#include <sqlite3.h>
#include <system_error>

namespace quillorn {

namespace fs = std::filesystem;

namespace {

std::string uri(const fs::path& file, bool isAlone) {
    std::string escaped;
    for (const char byte : fs::absolute(file).string())
        escaped += byte == '%' || byte == '?' || byte == '#' ? fmt::format("%{:02X}", byte) : std::string(1, byte);
    return "file://" + escaped + (isAlone ? "?immutable=1" : "?mode=ro");
}

/// The first column of the first row; absent, with the fault noted, where there is none.
std::optional<std::string> query(sqlite3* database, const char* sql, StoreCheck& check) {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(database, sql, -1, &statement, nullptr);
    const std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> owner(statement, sqlite3_finalize);
    if (statement == nullptr || sqlite3_step(statement) != SQLITE_ROW) {
        const int code = sqlite3_errcode(database) & 0xff;
        check.fault = sqlite3_errmsg(database);
        check.isDamaged = code == SQLITE_CORRUPT || code == SQLITE_NOTADB;
        return std::nullopt;
    }
    const unsigned char* text = sqlite3_column_text(statement, 0);
    return text != nullptr ? reinterpret_cast<const char*>(text) : "";
}

/// The first column of every row; none where the question makes no sense.
std::vector<std::string> answersTo(sqlite3* database, const std::string& question) {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(database, question.c_str(), -1, &statement, nullptr);
    const std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> owner(statement, sqlite3_finalize);
    std::vector<std::string> answers;
    while (statement != nullptr && sqlite3_step(statement) == SQLITE_ROW)
        if (const unsigned char* text = sqlite3_column_text(statement, 0))
            answers.emplace_back(reinterpret_cast<const char*>(text));
    return answers;
}

StoreCheck checkFile(const fs::path& file, bool isAlone, const std::string& question) {
    StoreCheck check;
    sqlite3* handle = nullptr;
    const int opened =
        sqlite3_open_v2(uri(file, isAlone).c_str(), &handle, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr);
    const std::unique_ptr<sqlite3, int (*)(sqlite3*)> database(handle, sqlite3_close);
    if (opened != SQLITE_OK) {
        check.fault = sqlite3_errstr(opened);
        return check;
    }
    sqlite3_busy_timeout(handle, 5000);
    const auto number = [&](const char* sql) {
        const auto text = check.fault.empty() ? query(handle, sql, check) : std::nullopt;
        return text ? std::atoi(text->c_str()) : 0;
    };
    check.applicationId = number("PRAGMA application_id");
    check.version = number("PRAGMA user_version");
    if (!check.fault.empty())
        return check;
    const auto result = query(handle, "PRAGMA integrity_check(1)", check);
    if (result && *result != "ok") {
        check.fault = *result;
        check.isDamaged = true;
    }
    if (check.fault.empty())
        check.answers = answersTo(handle, question);
    return check;
}

} // namespace

StoreCheck checkStore(const fs::path& file, RandomSource& random, const std::string& question) {
    const fs::path log = file.string() + "-wal";
    const fs::path sharedMemory = file.string() + "-shm";
    std::error_code unknown;
    const std::uintmax_t logSize = fs::file_size(log, unknown);
    const bool hasLog = !unknown;
    const bool isInUse = hasLog && fs::exists(sharedMemory, unknown);
    // SQLite makes both files beside a store that has them not, even to read; then nobody has it open, though, and it
    // can be read as a file of its own. Where a log has lost its companion, a copy gets a new one.
    if (isInUse || !hasLog || logSize == 0)
        return checkFile(file, !isInUse, question);
    try {
        const TemporaryDirectory temporary(random);
        const fs::path copy = temporary / "copy.store";
        fs::copy_file(file, copy);
        fs::copy_file(log, copy.string() + "-wal");
        return checkFile(copy, false, question);
    } catch (const std::system_error& error) {
        return {.fault = fmt::format("Can't copy it to look into it: {}", error.code().message())};
    }
}

std::string sqliteVersion() {
    return sqlite3_libversion();
}

} // namespace quillorn
