#pragma once

#include "CLI/Commands.h"

#include <functional>
#include <string>
#include <vector>

namespace quillorn {

/// The arguments of a command that takes several records; "-" stands for the lines of standard input, each up to its
/// first TAB. Throws std::runtime_error where there are too many.
std::vector<std::string> expandedArguments(const std::vector<std::string>& arguments);

/// Does something for each argument, in order. What an argument throws is said in one line, "quillorn: ARGUMENT:
/// reason", and the others are done all the same; the status tells that one failed.
class Batch {
  public:
    explicit Batch(const std::vector<std::string>& arguments) : m_arguments(expandedArguments(arguments)) {}

    const std::vector<std::string>& arguments() const { return m_arguments; }
    void run(const std::function<void(const std::string& argument)>& act);
    ExitStatus status() const { return m_hasFailed ? ExitStatus::failure : ExitStatus::success; }

  private:
    std::vector<std::string> m_arguments;
    bool m_hasFailed = false;
};

} // namespace quillorn
