#include "Integration/ServerProcess.h"

#include "Support/TestClient.h"

#include <cstdlib>

namespace quillorn {

namespace {

ChildProcess::Launch completed(const std::filesystem::path& home, ChildProcess::Launch launch) {
    if (launch.program.empty())
        launch.program = QUILLORN_PROGRAM;
    std::error_code ignored;
    std::filesystem::create_directory(home / "tmp", ignored);
    std::map<std::string, std::string> environment{{"TMPDIR", home / "tmp"},
                                                   {"XDG_DATA_HOME", home / "data"},
                                                   {"XDG_CONFIG_HOME", home / "config"},
                                                   {"HOME", home},
                                                   {"LANG", "C"},
                                                   {"TZ", "UTC"},
                                                   {"PATH", "/usr/bin:/bin"}};
    for (const char* sanitizer : {"ASAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS"})
        if (const char* value = std::getenv(sanitizer))
            environment[sanitizer] = value;
    if (launch.environment)
        environment.merge(*launch.environment);
    launch.environment = std::move(environment);
    return launch;
}

ChildProcess::Launch serving(ChildProcess::Launch launch) {
    launch.arguments.insert(launch.arguments.begin(), {"serve", "--port", "0"});
    return launch;
}

} // namespace

ProgramProcess::ProgramProcess(const std::filesystem::path& home, Launch launch)
    : ChildProcess(completed(home, std::move(launch))) {}

ServerProcess::ServerProcess(const std::filesystem::path& home, Launch launch)
    : ProgramProcess(home, serving(std::move(launch))) {
    const std::string line = waitForLine("API Server started on http://");
    m_port = static_cast<std::uint16_t>(std::stoi(line.substr(line.find(':', line.find("//")) + 1)));
}

std::string ServerProcess::request(const std::string& method, const std::string& path, const std::string& body,
                                   const std::string& header) const {
    return answerTo(m_port, requestText(method, path, body, header));
}

Json ServerProcess::json(const std::string& method, const std::string& path, const std::string& body) const {
    return Json::parse(bodyOf(request(method, path, body)));
}

std::string requestText(const std::string& method, const std::string& path, const std::string& body,
                        const std::string& header) {
    return method + " " + path + " HTTP/1.1\r\nHost: localhost\r\n" + header +
           "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

} // namespace quillorn
