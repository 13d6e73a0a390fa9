#pragma once

#include <filesystem>
#include <memory>
#include <string>

namespace quillorn {

class Paths;

/// Whether a program is started when the user logs in, as it stands on the disk. May be asked from any thread.
class LoginItem {
  public:
    enum class State {
        off,
        on,
        /// Something of another origin has the name. It stays as it is.
        foreign,
    };

    virtual ~LoginItem() = default;
    /// Throws std::system_error.
    virtual State state() const = 0;
    /// Throws std::runtime_error with words for the user, also for what is foreign.
    virtual void set(bool startsAtLogin) = 0;
};

/// What is started, and what for people.
struct LoginProgram {
    std::string identifier;
    std::string name;
    std::filesystem::path program;
};

/// The login item of the system that this program was built for.
std::unique_ptr<LoginItem> systemLoginItem(const Paths& paths, LoginProgram program);

} // namespace quillorn
