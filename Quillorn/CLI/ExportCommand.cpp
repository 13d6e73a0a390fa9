#include "CLI/Output.h"
#include "CLI/Session.h"
#include "CLI/TimeCommands.h"
#include "Platform/AtomicFile.h"
#include "Platform/FileContent.h"
#include "Services/StoreExport.h"
#include "Services/StoreImport.h"

#include <fmt/core.h>
#include <fmt/ranges.h>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <system_error>

namespace quillorn {

namespace {

/// In bytes; an export is held in memory while it is read.
constexpr std::size_t largestExport = std::size_t{2} << 30;

void writeExport(ModelContext& context, const std::filesystem::path& file) {
    try {
        replaceFile(file, [&](const std::function<void(std::string_view)>& put) {
            JsonWriter writer(put);
            exportStore(context, writer);
            writer.finish();
            put("\n");
        });
    } catch (const std::system_error& error) {
        throw std::runtime_error(fmt::format("{}: {}", file.string(), error.code().message()));
    }
}

std::string readInput() {
    std::string text;
    for (std::string piece(std::size_t{1} << 16, '\0'); std::cin;) {
        std::cin.read(piece.data(), static_cast<std::streamsize>(piece.size()));
        text.append(piece, 0, static_cast<std::size_t>(std::cin.gcount()));
        if (text.size() > largestExport)
            throw std::runtime_error("this is too large for an export");
    }
    return text;
}

std::string readExport(const std::string& file) {
    if (file == "-")
        return readInput();
    try {
        struct stat status{};
        const FileDescriptor opened = openFile(file, status);
        if (static_cast<std::size_t>(status.st_size) > largestExport)
            throw std::runtime_error(fmt::format("{} is too large for an export", file));
        return readWhole(opened, static_cast<std::size_t>(status.st_size));
    } catch (const std::system_error& error) {
        throw std::runtime_error(fmt::format("{}: {}", file, error.code().message()));
    }
}

/// "6 clients, 12 projects"; what there is none of is left out.
std::string listOf(const ImportCounts& counts) {
    std::vector<std::string> parts;
    for (const auto& [name, count] : counts) {
        std::string words = name == "timeEntries"    ? "time entries"
                            : name == "chatMessages" ? "chat messages"
                                                     : std::string(name);
        if (count == 1)
            words = name == "timeEntries" ? "time entry" : words.substr(0, words.size() - 1);
        if (count > 0)
            parts.push_back(fmt::format("{} {}", count, words));
    }
    return parts.empty() ? "nothing" : fmt::format("{}", fmt::join(parts, ", "));
}

} // namespace

ExitStatus exportEverything(const std::string& file, const ProcessInfo& process) {
    Session session(process);
    if (session.hasFailed())
        return ExitStatus::failure;
    ModelContext context(session.app().container());
    if (file == "-") {
        printJson([&](JsonWriter& writer) { exportStore(context, writer); });
    } else {
        writeExport(context, file);
        fmt::print("Exported to {}\n", shown(file));
    }
    return ExitStatus::success;
}

ExitStatus importEverything(const ImportOptions& options, const ProcessInfo& process) {
    const std::string text = readExport(options.file);
    Session session(process);
    if (session.hasFailed())
        return ExitStatus::failure;
    ImportCounts counts;
    try {
        counts =
            importIntoStore(session.app().container(), text, options.isDryRun ? ImportKind::dryRun : ImportKind::real);
    } catch (const ImportError& error) {
        throw std::runtime_error(fmt::format("nothing was imported: {}", error.what()));
    }
    if (options.json) {
        Json::Object object;
        for (const auto& [name, count] : counts)
            object.emplace(name, count);
        printJson(object);
    } else {
        fmt::print("{} {}\n", options.isDryRun ? "Would import" : "Imported", listOf(counts));
    }
    return ExitStatus::success;
}

} // namespace quillorn
