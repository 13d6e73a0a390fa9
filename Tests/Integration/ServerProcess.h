#pragma once

#include "Support/TemporaryFolder.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <sys/types.h>
#include <vector>

namespace quillorn {

/// The program as a process of its own, with the folders of a test in place of the user's.
class ProgramProcess {
  public:
    struct Options {
        std::vector<std::string> arguments{};
        std::map<std::string, std::string> environment{};
        /// Runs in the child just before the program takes over: for limits and users.
        std::function<void()> prepare{};
        /// In place of the program that was built.
        std::filesystem::path program{};
    };

    /// `home` gets "data" and "config".
    ProgramProcess(const std::filesystem::path& home, Options options);
    /// Kills what still runs.
    ~ProgramProcess();
    ProgramProcess(const ProgramProcess&) = delete;
    ProgramProcess& operator=(const ProgramProcess&) = delete;

    /// Reads the program's errors until a line contains `part`; returns that line. Throws when the program ends before.
    std::string waitForLine(const std::string& part);
    void signal(int number) const;
    /// Waits for the end; the exit status, or minus the signal that ended it.
    int wait();

    /// Everything written so far; complete after wait().
    const std::string& output() const { return m_output; }
    const std::string& errors() const { return m_errors; }
    pid_t id() const { return m_child; }

  private:
    bool readSome();

    pid_t m_child = -1;
    int m_outputPipe = -1;
    int m_errorPipe = -1;
    std::string m_output;
    std::string m_errors;
};

/// `quillorn serve` on a free port.
class ServerProcess : public ProgramProcess {
  public:
    /// Returns when it listens.
    explicit ServerProcess(const std::filesystem::path& home, Options options = {});

    std::uint16_t port() const { return m_port; }

  private:
    std::uint16_t m_port = 0;
};

} // namespace quillorn
