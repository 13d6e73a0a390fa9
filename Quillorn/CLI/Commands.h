#pragma once

#include "App/RunMode.h"

#include <cstdint>
#include <optional>
#include <string>

namespace quillorn {

/// What a command ends the process with.
enum class ExitStatus { success = 0, failure = 1, usage = 2 };

/// Options of `quillorn serve`; what is absent comes from the settings.
struct ServeOptions {
    std::optional<std::int64_t> port;
    bool external = false;
    bool requireAuth = false;
    std::optional<std::string> key;
    /// To read the key from; "-" is standard input.
    std::optional<std::string> keyFile;
};

/// Runs the application without a window until SIGINT or SIGTERM.
ExitStatus serve(const ServeOptions& options, const ProcessInfo& process);

struct SettingsOptions {
    /// Also what isn't chosen by the user.
    bool all = false;
    /// Also what is secret.
    bool showKeys = false;
    bool json = false;
};

ExitStatus listSettings(const SettingsOptions& options);
ExitStatus getSetting(const std::string& key, const SettingsOptions& options);
ExitStatus setSetting(const std::string& key, const std::string& value);
/// The same with what standard input says.
ExitStatus readSetting(const std::string& key);
/// The same with a key that is made here.
ExitStatus generateSetting(const std::string& key);
ExitStatus resetSetting(const std::string& key);

/// Backups of the user's store, also while a server runs on it.
ExitStatus backUp(bool json, const ProcessInfo& process);
/// Also looks into each, unless `check` is false; fails when one is damaged.
ExitStatus listBackups(bool json, bool check);
/// Asks first, unless `confirmed`.
ExitStatus restore(const std::string& file, bool confirmed, const ProcessInfo& process);

/// How the store and the others who write to it get along, as the server or the desktop shows it.
ExitStatus showSync(bool json);

/// Looks whether all is well, changing nothing; fails when it is not.
ExitStatus examine(bool json);

} // namespace quillorn
