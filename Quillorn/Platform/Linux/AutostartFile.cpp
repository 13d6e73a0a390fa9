#include "Platform/Linux/AutostartFile.h"

#include "Platform/AtomicFile.h"
#include "Platform/FileContent.h"
#include "Platform/Paths.h"

#include <algorithm>
#include <fmt/core.h>
#include <stdexcept>
#include <string_view>

namespace quillorn {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view ourMark = "X-Quillorn-Login=true";
/// How desktops switch an entry off without removing it.
constexpr std::string_view switchedOff[] = {"Hidden=true", "X-GNOME-Autostart-enabled=false"};
/// No entry of ours is near that.
constexpr std::uintmax_t largestFile = 64 * 1024;

bool hasLine(const std::string& text, std::string_view line) {
    return fmt::format("\n{}\n", text).find(fmt::format("\n{}\n", line)) != std::string::npos;
}

/// A word of a command: between quotes four signs are escaped, the backslash once more as in each value, and the
/// percent sign stands for itself when doubled.
std::string quoted(const std::string& word) {
    if (std::ranges::any_of(word, [](char each) { return (each >= 0 && each < 0x20) || each == 0x7F; }))
        throw std::runtime_error("The path of the program has signs that can't be written down");
    std::string escaped;
    for (const char each : word) {
        if (each == '\\')
            escaped += R"(\\\)";
        else if (each == '"' || each == '`' || each == '$')
            escaped += R"(\\)";
        else if (each == '%')
            escaped += '%';
        escaped += each;
    }
    return fmt::format("\"{}\"", escaped);
}

} // namespace

AutostartFile::State AutostartFile::state() const {
    const fs::file_status status = fs::symlink_status(m_file);
    if (!fs::exists(status))
        return State::off;
    if (!fs::is_regular_file(status) || fs::file_size(m_file) > largestFile)
        return State::foreign;
    const std::string text = readWhole(openFile(m_file), largestFile);
    if (!hasLine(text, ourMark))
        return State::foreign;
    return std::ranges::any_of(switchedOff, [&](std::string_view line) { return hasLine(text, line); }) ? State::off
                                                                                                        : State::on;
}

void AutostartFile::set(bool startsAtLogin) {
    const State present = state();
    if (present == State::foreign)
        throw std::runtime_error(
            fmt::format("{} is of another origin, and stays as it is. Once it is moved away the choice is yours again.",
                        m_file.string()));
    if (!startsAtLogin) {
        fs::remove(m_file);
        return;
    }
    if (present == State::on)
        return;
    createPrivateFolder(m_file.parent_path());
    // One that is switched off is ours, and makes way; else nothing may have come in between.
    if (!createFile(m_file, content()) && state() == State::off)
        replaceFile(m_file, content());
}

std::string AutostartFile::content() const {
    return fmt::format("[Desktop Entry]\nType=Application\nName={}\nExec={}\nIcon={}\n{}\n", m_program.name,
                       quoted(m_program.program.string()), m_program.identifier, ourMark);
}

std::unique_ptr<LoginItem> systemLoginItem(const Paths& paths, LoginProgram program) {
    fs::path file = paths.configuration() / "autostart" / (program.identifier + ".desktop");
    return std::make_unique<AutostartFile>(std::move(file), std::move(program));
}

} // namespace quillorn
