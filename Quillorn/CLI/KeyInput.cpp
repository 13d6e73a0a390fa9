#include "CLI/KeyInput.h"

#include "Models/Settings.h"
#include "Platform/Terminal.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fmt/core.h>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <termios.h>
#include <unistd.h>

namespace quillorn {

namespace {

constexpr std::size_t longestValue = 64 * 1024;

/// While it lives the terminal shows nothing of what is typed. Ctrl-C is a character like others then, or a process
/// that ends by it would leave the terminal dumb.
class Silence {
  public:
    Silence() : m_isChanged(::tcgetattr(STDIN_FILENO, &m_before) == 0) {
        termios silent = m_before;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO | ISIG);
        if (m_isChanged)
            ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
    }
    ~Silence() {
        if (m_isChanged)
            ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &m_before);
    }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;

  private:
    termios m_before{};
    bool m_isChanged;
};

std::string ask(const std::string& prompt) {
    fmt::print(stderr, "{}: ", prompt);
    (void)std::fflush(stderr);
    std::string line;
    {
        const Silence silence;
        std::getline(std::cin, line);
    }
    fmt::print(stderr, "\n");
    return line;
}

std::string readAll(std::istream& stream, const std::string& name) {
    std::string text(longestValue + 1, '\0');
    stream.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (stream.bad() || (stream.fail() && !stream.eof()))
        throw std::runtime_error(fmt::format("{} can't be read", name));
    text.resize(static_cast<std::size_t>(stream.gcount()));
    if (text.size() > longestValue)
        throw std::runtime_error(fmt::format("{} is too long", name));
    if (text.ends_with('\n'))
        text.pop_back();
    if (text.ends_with('\r'))
        text.pop_back();
    return text;
}

void blank(char* text) {
    std::memset(text, ' ', std::strlen(text));
}

} // namespace

std::string readValue(const std::string& file, const std::string& prompt) {
    if (file == "-")
        return isTerminal(stdin) ? ask(prompt) : readAll(std::cin, "standard input");
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw std::runtime_error(fmt::format("{} can't be read: {}", file, std::generic_category().message(errno)));
    return readAll(stream, file);
}

void hideKeys(int count, char** arguments) {
    constexpr std::string_view option = "--key";
    bool isKey = false;
    bool isAfterSecret = false;
    for (int i = 1; i < count; ++i) {
        const std::string_view argument = arguments[i];
        const Setting* setting = findSetting(argument);
        const bool isOption = argument == option;
        if (isKey || isAfterSecret)
            blank(arguments[i]);
        else if (argument.starts_with(option) && argument.substr(option.size()).starts_with('='))
            blank(arguments[i] + option.size() + 1);
        isAfterSecret = isAfterSecret || (setting != nullptr && setting->isSecret);
        isKey = isOption;
    }
}

} // namespace quillorn
