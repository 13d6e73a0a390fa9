#pragma once

#include <filesystem>
#include <string>
#include <sys/types.h>

namespace quillorn {

/// This test program once more, as another process that works on a store as it is told, a line at a time:
///   add NAME      saves a tag, answers "ok"
///   names         answers the names of all tags, "a,b"
///   increment N   increments the only task's sortOrder N times, one save each, answers "ok"
///   hold          takes the write lock with an unsaved tag, and answers "held"
class ChildProcess {
  public:
    explicit ChildProcess(const std::filesystem::path& store);
    /// Ends the process if it still runs.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    void tell(const std::string& line);
    std::string answer();
    std::string ask(const std::string& line) {
        tell(line);
        return answer();
    }
    void signal(int number);
    /// Kills it, and returns when it is gone.
    void kill();

  private:
    pid_t m_process = -1;
    int m_input = -1;
    int m_output = -1;
};

/// Adds one to the sortOrder of the store's only task, in a unit of work of its own.
class ModelContainer;
void increment(ModelContainer& container);

} // namespace quillorn
