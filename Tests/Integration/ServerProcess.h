#pragma once

#include "Platform/Json.h"
#include "Support/ChildProcess.h"
#include "Support/TemporaryFolder.h"

#include <cstdint>

namespace quillorn {

/// The program that was built, with the "data" and "config" of a test's folder in place of the user's.
struct ProgramProcess : ChildProcess {
    /// An empty program of `launch` is the one that was built; its environment is added to what the program needs.
    ProgramProcess(const std::filesystem::path& home, Launch launch);
};

/// `quillorn serve` on a free port.
class ServerProcess : public ProgramProcess {
  public:
    /// Returns when it listens.
    explicit ServerProcess(const std::filesystem::path& home, Launch launch = {});

    std::uint16_t port() const { return m_port; }
    /// The whole response to a request on a connection of its own; `header` is a line with its end.
    std::string request(const std::string& method, const std::string& path, const std::string& body = {},
                        const std::string& header = {}) const;
    /// The body of a response, as JSON.
    Json json(const std::string& method, const std::string& path, const std::string& body = {}) const;
    bool isServing() const { return request("GET", "/api/health").starts_with("HTTP/1.1 200 "); }

  private:
    std::uint16_t m_port = 0;
};

std::string requestText(const std::string& method, const std::string& path, const std::string& body = {},
                        const std::string& header = {});

} // namespace quillorn
