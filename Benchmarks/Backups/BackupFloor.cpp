// What a backup costs at least: a copy by VACUUM INTO, SQLite's check of it, one call of the compression, one write.
// It shares no code with the program.

#include <cstdio>
#include <filesystem>
#include <fmt/core.h>
#include <lzfse.h>
#include <memory>
#include <sqlite3.h>
#include <stdexcept>
#include <string>

namespace {

namespace fs = std::filesystem;

using Connection = std::unique_ptr<sqlite3, int (*)(sqlite3*)>;

Connection opened(const fs::path& file) {
    sqlite3* database = nullptr;
    if (sqlite3_open_v2(file.c_str(), &database, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK)
        throw std::runtime_error(sqlite3_errmsg(database));
    return {database, sqlite3_close};
}

void copyStore(const fs::path& store, const fs::path& copy) {
    const Connection connection = opened(store);
    if (sqlite3_exec(connection.get(), ("VACUUM INTO '" + copy.string() + "'").c_str(), nullptr, nullptr, nullptr))
        throw std::runtime_error(sqlite3_errmsg(connection.get()));
}

void check(const fs::path& copy) {
    const Connection connection = opened(copy);
    const auto isOk = [](void*, int, char** values, char**) { return std::string(values[0]) == "ok" ? 0 : 1; };
    if (sqlite3_exec(connection.get(), "PRAGMA integrity_check", isOk, nullptr, nullptr) != SQLITE_OK)
        throw std::runtime_error("the copy is not sound");
}

void compress(const fs::path& from, const fs::path& to) {
    using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;
    const std::size_t size = fs::file_size(from);
    const std::unique_ptr<std::uint8_t[]> bytes(new std::uint8_t[size]), compressed(new std::uint8_t[size]);
    if (const File file{std::fopen(from.c_str(), "rb"), std::fclose};
        !file || std::fread(bytes.get(), 1, size, file.get()) != size)
        throw std::runtime_error("the copy can't be read");
    const std::size_t length = lzfse_encode_buffer(compressed.get(), size, bytes.get(), size, nullptr);
    if (const File file{std::fopen(to.c_str(), "wb"), std::fclose};
        !file || std::fwrite(compressed.get(), 1, length, file.get()) != length)
        throw std::runtime_error("the backup can't be written");
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3)
        return fmt::print(stderr, "usage: quillorn-backup-floor STORE NEW_FILE\n"), 2;
    try {
        const fs::path copy = fs::path(argv[2]).concat(".store");
        copyStore(argv[1], copy);
        check(copy);
        compress(copy, argv[2]);
        fs::remove(copy);
    } catch (const std::exception& error) {
        fmt::print(stderr, "{}\n", error.what());
        return 1;
    }
    return 0;
}
