#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace quillorn {

class Clock;
class Paths;
class SettingsStore;
class SystemLog;

/// The store's file, in whatever folder.
inline constexpr const char* storeName = "Quillorn.store";

/// Brings data of earlier builds to where this one keeps it, before the store is opened. Both only ever add: the source
/// stays, and what stood at the destination is kept. No failure stops the launch; each is a line in the log.
struct DataMigration {
    const Paths& paths;
    SettingsStore& settings;
    SystemLog& log;
    const Clock& clock;

    /// From the container folder of the program's former name into that of its present one. Nothing here reads that
    /// folder: it is where the sandboxed builds of another platform look.
    void migrateOldLocation() const;

    /// What the second migration has done.
    struct Result {
        bool copiedStore = false;
        /// The folder in which the store that stood here is kept.
        std::optional<std::string> keptIn{};
        std::size_t backups = 0;
        std::size_t settings = 0;

        std::string text() const;
    };

    /// From the home folder that the user database names, where builds outside of a sandbox kept store, backups and
    /// settings. Once in the life of an installation, whatever it finds; a launch that was killed in its middle is
    /// completed by the next. A store that another process has open is left for a later launch.
    void migrateFromUnsandboxedLocation() const;
};

} // namespace quillorn
