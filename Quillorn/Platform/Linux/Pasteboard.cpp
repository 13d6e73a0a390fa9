#include "Platform/Pasteboard.h"

#include "Platform/FileDescriptor.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <optional>
#include <spawn.h>
#include <stdexcept>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

// NOLINTNEXTLINE(readability-redundant-declaration): POSIX leaves it to the program, only glibc has it in a header
extern char** environ;

namespace quillorn {

namespace {

bool isSet(const char* variable) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing here changes the environment
    const char* value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

/// Starts the program with `input` as its standard input, and nothing of ours as its output, which it keeps open for
/// as long as it offers the text.
std::optional<pid_t> start(std::vector<std::string> words, int input) {
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_adddup2(&files, input, STDIN_FILENO);
    for (const int output : {STDOUT_FILENO, STDERR_FILENO})
        posix_spawn_file_actions_addopen(&files, output, "/dev/null", O_WRONLY, 0);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t usual; // what we ignore is ours alone
    sigemptyset(&usual);
    sigaddset(&usual, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes, &usual);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    pid_t child = 0;
    const int fault = posix_spawnp(&child, arguments[0], &files, &attributes, arguments.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return fault == 0 ? std::optional(child) : std::nullopt;
}

bool give(const std::vector<std::string>& words, std::string_view text) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        return false;
    FileDescriptor reading(ends[0]);
    FileDescriptor writing(ends[1]);
    const auto child = start(words, reading.number());
    reading = {};
    if (!child)
        return false;
    while (!text.empty()) {
        const ssize_t count = ::write(writing.number(), text.data(), text.size());
        if (count < 0 && errno != EINTR)
            break;
        text.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    writing = {};
    int status = 0;
    while (::waitpid(*child, &status, 0) < 0 && errno == EINTR) {
    }
    return text.empty() && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

void copyToPasteboard(const std::string& text) {
    if (isSet("WAYLAND_DISPLAY") && give({"wl-copy"}, text))
        return;
    if (isSet("DISPLAY") && give({"xclip", "-selection", "clipboard"}, text))
        return;
    throw std::runtime_error("the text can't be copied: it needs a display, and wl-copy (package wl-clipboard) under "
                             "Wayland or xclip under X");
}

} // namespace quillorn
