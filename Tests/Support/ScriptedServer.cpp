#include "Support/ScriptedServer.h"

#include "HTTP/HttpErrors.h"
#include "HTTP/HttpParser.h"
#include "Platform/Json.h"

#include <sys/socket.h>

namespace quillorn {

ScriptedServer::ScriptedServer() : m_listener(Socket::listenSocket(0, true, 128, "127.0.0.1")) {
    m_accepting = std::jthread([this] {
        try {
            while (true) {
                auto socket = std::make_shared<Socket>(m_listener.acceptClient());
                m_workers.emplace_back([this, socket] { serve(std::move(*socket)); });
            }
        } catch (const SocketError&) {
        }
    });
}

ScriptedServer::~ScriptedServer() {
    release();
    m_listener.interrupt();
    m_accepting.join();
    m_workers.clear();
}

void ScriptedServer::expect(Script script) {
    const std::lock_guard lock(m_mutex);
    m_scripts.push_back(std::move(script));
}

void ScriptedServer::standBy(Script script) {
    const std::lock_guard lock(m_mutex);
    m_standBy = std::move(script);
}

void ScriptedServer::forgetScripts() {
    const std::lock_guard lock(m_mutex);
    m_scripts.clear();
}

std::vector<HttpRequest> ScriptedServer::requests(std::size_t count) {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return m_requests.size() >= count; });
    return m_requests;
}

void ScriptedServer::waitForSilence() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return m_silences > 0; });
}

void ScriptedServer::waitForLeaving() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return m_leavings > 0; });
}

void ScriptedServer::release() {
    const std::lock_guard lock(m_mutex);
    m_isReleased = true;
    m_changed.notify_all();
}

std::string ScriptedServer::answer(int status, const std::string& body, const std::string& headers) {
    return "HTTP/1.1 " + std::to_string(status) + " Said\r\nConnection: close\r\n" + headers + "\r\n" + body;
}

void ScriptedServer::serve(Socket socket) {
    try {
        Script script;
        HttpRequest request = HttpParser().readHttpRequest(socket);
        {
            const std::lock_guard lock(m_mutex);
            m_requests.push_back(std::move(request));
            script = m_scripts.empty() ? m_standBy : m_scripts.front();
            if (!m_scripts.empty())
                m_scripts.pop_front();
            m_changed.notify_all();
        }
        if (play(socket, script)) {
            socket.endWriting();
            socket.readByte(); // until the client has it all, and ends too
        }
    } catch (const std::exception&) {
        // The client has gone.
    }
}

bool ScriptedServer::play(Socket& socket, const Script& script) {
    for (const auto& step : script)
        if (const auto* text = std::get_if<std::string>(&step)) {
            socket.writeBytes(*text);
        } else if (const auto* bytes = std::get_if<Bytewise>(&step)) {
            for (const char byte : bytes->text)
                socket.writeBytes({&byte, 1});
        } else if (std::holds_alternative<Reset>(step)) {
            const linger none{1, 0};
            ::setsockopt(socket.descriptor(), SOL_SOCKET, SO_LINGER, &none, sizeof none);
            return false;
        } else if (!beSilent(socket)) {
            return false;
        }
    return true;
}

bool ScriptedServer::beSilent(const Socket& socket) {
    std::unique_lock lock(m_mutex);
    ++m_silences;
    m_changed.notify_all();
    while (!m_isReleased) {
        m_changed.wait_for(lock, std::chrono::milliseconds(1));
        char byte = 0;
        if (::recv(socket.descriptor(), &byte, 1, MSG_DONTWAIT | MSG_PEEK) == 0) {
            ++m_leavings;
            m_changed.notify_all();
            return false;
        }
    }
    return true;
}

namespace chat {

namespace {

std::string chunk(Json choice) {
    return "data: " + Json(Json::Object{{"choices", Json::Array{std::move(choice)}}}).text() + "\n\n";
}

} // namespace

std::string text(std::string_view content) {
    return chunk(Json::Object{{"delta", Json::Object{{"content", content}}}});
}

std::string call(int index, std::string_view id, std::string_view name, std::string_view arguments) {
    const Json function = Json::Object{{"name", name}, {"arguments", arguments}};
    Json call = Json::Object{{"index", index}, {"id", id}, {"function", function}};
    return chunk(Json::Object{{"delta", Json::Object{{"tool_calls", Json::Array{std::move(call)}}}}});
}

std::string finish(std::string_view reason) {
    return chunk(Json::Object{{"delta", Json::Object{}}, {"finish_reason", reason}});
}

ScriptedServer::Script stream(const std::vector<std::string>& chunks) {
    std::string body;
    for (const std::string& each : chunks)
        body += each;
    return {ScriptedServer::answer(200, body)};
}

} // namespace chat

} // namespace quillorn
