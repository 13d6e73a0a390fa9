#pragma once

#include <map>
#include <string>
#include <vector>

namespace quillorn {

/// What a process was started with.
struct ProcessInfo {
    /// Without the program's name.
    std::vector<std::string> arguments;
    std::map<std::string, std::string> environment;

    /// Of the arguments of main(), and of the environment as it stands.
    static ProcessInfo of(int count, char** arguments);
};

/// "-QUILLORN_DEMO", as an argument of its own, asks for demo mode.
inline constexpr const char* demoArgument = "-QUILLORN_DEMO";

/// The flags that decide what a launch works on.
struct LaunchFlags {
    bool isTesting = false;
    bool isDemo = false;

    static LaunchFlags of(const ProcessInfo& process);
};

enum class RunMode {
    /// An empty store in memory for test tools, nothing scheduled.
    test,
    /// The same for showing the program.
    demo,
    /// The user's store.
    normal,
    /// The user's store could not be opened: an empty one in memory stands in, and nothing is scheduled.
    fallback,
};

} // namespace quillorn
