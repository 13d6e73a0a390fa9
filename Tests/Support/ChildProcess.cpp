#include "Support/ChildProcess.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

extern char** environ;

namespace quillorn {

namespace {

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> list;
    for (std::string& text : texts)
        list.push_back(text.data());
    list.push_back(nullptr);
    return list;
}

} // namespace

ChildProcess::ChildProcess(Launch launch) {
    launch.arguments.insert(launch.arguments.begin(), launch.program.string());
    std::vector<std::string> variables;
    if (launch.environment)
        for (const auto& [name, value] : *launch.environment)
            variables.push_back(name + "=" + value);
    const std::vector<char*> arguments = pointers(launch.arguments);
    const std::vector<char*> environment = pointers(variables);

    std::array<std::array<int, 2>, 3> pipes{}; // each with the end to read from first
    for (auto& ends : pipes)
        if (pipe2(ends.data(), O_CLOEXEC) != 0)
            throw std::runtime_error("no pipe");
    const auto& [in, out, err] = pipes;
    m_child = fork();
    if (m_child == 0) {
        dup2(in[0], STDIN_FILENO);
        dup2(out[1], STDOUT_FILENO);
        dup2(err[1], STDERR_FILENO);
        if (launch.prepare)
            launch.prepare();
        execve(launch.program.c_str(), arguments.data(), launch.environment ? environment.data() : environ);
        _exit(127);
    }
    for (const int childsEnd : {in[0], out[1], err[1]})
        close(childsEnd);
    m_inputPipe = in[1];
    m_outputPipe = out[0];
    m_errorPipe = err[0];
}

ChildProcess::~ChildProcess() {
    if (m_child > 0) {
        kill(m_child, SIGKILL);
        waitpid(m_child, nullptr, 0);
    }
    for (const int end : {m_inputPipe, m_outputPipe, m_errorPipe})
        close(end);
}

void ChildProcess::tell(const std::string& line) const {
    const std::string bytes = line + "\n";
    if (write(m_inputPipe, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()))
        throw std::runtime_error("the program does not listen: " + m_errors);
}

void ChildProcess::closeInput() {
    close(std::exchange(m_inputPipe, -1));
}

std::string ChildProcess::nextLine(const std::string& stream, std::size_t& taken, std::string_view part) {
    while (true) {
        for (std::size_t end; (end = stream.find('\n', taken)) != std::string::npos;) {
            const std::string line = stream.substr(taken, end - taken);
            taken = end + 1;
            if (line.find(part) != std::string::npos)
                return line;
        }
        if (!readSome())
            throw std::runtime_error("the program ended: " + m_errors);
    }
}

bool ChildProcess::readSome() {
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

void ChildProcess::signal(int number) const {
    // After wait() there is no such process; and -1 would mean all of them.
    if (m_child > 0)
        kill(m_child, number);
}

int ChildProcess::wait() {
    while (readSome()) {
    }
    int status = 0;
    waitpid(m_child, &status, 0);
    m_child = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

} // namespace quillorn
