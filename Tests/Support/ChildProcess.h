#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace quillorn {

/// A program as a process of its own, with pipes to its standard input, output and errors.
class ChildProcess {
  public:
    struct Launch {
        std::filesystem::path program{};
        std::vector<std::string> arguments{};
        /// In place of this process's own environment.
        std::optional<std::map<std::string, std::string>> environment{};
        /// Runs in the child just before the program takes over: for limits and users.
        std::function<void()> prepare{};
    };

    explicit ChildProcess(Launch launch);
    /// Kills what still runs.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// Writes a line to the program.
    void tell(const std::string& line) const;
    /// The program reads the end of its input.
    void closeInput();
    /// The next line of its output. Throws when the program ends before, as waitForLine() does.
    std::string answer() { return nextLine(m_output, m_answered, {}); }
    std::string ask(const std::string& line) {
        tell(line);
        return answer();
    }
    /// The next line of its errors that contains `part`.
    std::string waitForLine(std::string_view part) { return nextLine(m_errors, m_read, part); }

    /// Of the process.
    pid_t id() const { return m_child; }
    void signal(int number) const;
    /// Waits for the end; the exit status, or minus the signal that ended it.
    int wait();

    /// Everything written so far; complete after wait().
    const std::string& output() const { return m_output; }
    const std::string& errors() const { return m_errors; }

  private:
    std::string nextLine(const std::string& stream, std::size_t& taken, std::string_view part);
    bool readSome();

    pid_t m_child = -1;
    int m_inputPipe = -1;
    int m_outputPipe = -1;
    int m_errorPipe = -1;
    std::string m_output;
    std::string m_errors;
    std::size_t m_answered = 0;
    std::size_t m_read = 0;
};

} // namespace quillorn
