#include "Integration/ServerProcess.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace quillorn {

namespace {

using Options = ProgramProcess::Options;

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> list;
    for (std::string& text : texts)
        list.push_back(text.data());
    list.push_back(nullptr);
    return list;
}

std::vector<std::string> environmentFor(const std::filesystem::path& home, const Options& options) {
    std::map<std::string, std::string> environment{{"XDG_DATA_HOME", (home / "data").string()},
                                                   {"XDG_CONFIG_HOME", (home / "config").string()},
                                                   {"HOME", home.string()},
                                                   {"LANG", "C"},
                                                   {"TZ", "UTC"},
                                                   {"PATH", "/usr/bin:/bin"}};
    for (const char* sanitizer : {"ASAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS"})
        if (const char* value = std::getenv(sanitizer))
            environment[sanitizer] = value;
    for (const auto& [name, value] : options.environment)
        environment[name] = value;
    std::vector<std::string> list;
    for (const auto& [name, value] : environment)
        list.push_back(name + "=" + value);
    return list;
}

Options serving(Options options) {
    options.arguments.insert(options.arguments.begin(), {"serve", "--port", "0"});
    return options;
}

} // namespace

ProgramProcess::ProgramProcess(const std::filesystem::path& home, Options options) {
    const std::filesystem::path program = options.program.empty() ? QUILLORN_PROGRAM : options.program;
    std::vector<std::string> arguments = options.arguments;
    arguments.insert(arguments.begin(), program.string());
    std::vector<std::string> environment = environmentFor(home, options);
    std::vector<char*> argumentList = pointers(arguments);
    std::vector<char*> environmentList = pointers(environment);

    std::array<int, 2> out{};
    std::array<int, 2> err{};
    if (pipe2(out.data(), O_CLOEXEC) != 0 || pipe2(err.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    m_child = fork();
    if (m_child == 0) {
        dup2(out[1], STDOUT_FILENO);
        dup2(err[1], STDERR_FILENO);
        if (options.prepare)
            options.prepare();
        execve(program.c_str(), argumentList.data(), environmentList.data());
        _exit(127);
    }
    close(out[1]);
    close(err[1]);
    m_outputPipe = out[0];
    m_errorPipe = err[0];
}

ProgramProcess::~ProgramProcess() {
    if (m_child > 0) {
        kill(m_child, SIGKILL);
        waitpid(m_child, nullptr, 0);
    }
    close(m_outputPipe);
    close(m_errorPipe);
}

bool ProgramProcess::readSome() {
    std::array<pollfd, 2> pipes{{{m_outputPipe, POLLIN, 0}, {m_errorPipe, POLLIN, 0}}};
    constexpr int patience = 60'000;
    if (poll(pipes.data(), pipes.size(), patience) <= 0)
        throw std::runtime_error("the program says nothing: " + m_errors);
    bool any = false;
    for (const pollfd& each : pipes) {
        if (each.revents == 0)
            continue;
        std::array<char, 4096> buffer{};
        const ssize_t count = read(each.fd, buffer.data(), buffer.size());
        if (count <= 0)
            continue;
        (each.fd == m_outputPipe ? m_output : m_errors).append(buffer.data(), static_cast<std::size_t>(count));
        any = true;
    }
    return any;
}

std::string ProgramProcess::waitForLine(const std::string& part) {
    while (true) {
        const std::size_t at = m_errors.find(part);
        const std::size_t end = at == std::string::npos ? at : m_errors.find('\n', at);
        if (end != std::string::npos) {
            const std::size_t begin = m_errors.rfind('\n', at) + 1;
            return m_errors.substr(begin, end - begin);
        }
        if (!readSome())
            throw std::runtime_error("the program ended: " + m_errors);
    }
}

void ProgramProcess::signal(int number) const {
    kill(m_child, number);
}

int ProgramProcess::wait() {
    while (readSome()) {
    }
    int status = 0;
    waitpid(m_child, &status, 0);
    m_child = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

ServerProcess::ServerProcess(const std::filesystem::path& home, Options options)
    : ProgramProcess(home, serving(std::move(options))) {
    const std::string line = waitForLine("API Server started on http://");
    m_port = static_cast<std::uint16_t>(std::stoi(line.substr(line.find(':', line.find("//")) + 1)));
}

} // namespace quillorn
