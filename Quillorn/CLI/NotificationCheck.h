#pragma once

#include <string>

namespace quillorn {

class SettingsStore;
class SystemLog;

/// Why a server would not show that tasks are due, in words for the user; empty where it would. Starts nobody.
std::string whyNoNotifications(SettingsStore& settings, SystemLog& log);

} // namespace quillorn
