#pragma once

#include "Platform/HttpClient.h"
#include "Platform/Observers.h"

#include <chrono>
#include <cstddef>
#include <deque>
#include <map>
#include <memory>
#include <string>

namespace quillorn {

class MainQueue;
class NotificationCenter;
class SettingsStore;
class SystemLog;

/// What the client needs. Referred to, not owned.
struct ThoughtkegEnvironment {
    HttpClient& httpClient;
    NotificationCenter& notifications;
    SettingsStore& settings;
    MainQueue& mainQueue;
    SystemLog& log;
};

/// Sends tasks that any surface of this process has completed to Thoughtkeg, a program for notes on this machine, once
/// they are on the disk. Fire and forget: what becomes of it is at most a line in the log. Belongs to the main thread.
class ThoughtkegClient {
  public:
    /// Of this machine, whatever the settings say.
    static constexpr const char* captureURL = "http://127.0.0.1:18081/capture";
    /// For one push as a whole.
    static constexpr std::chrono::milliseconds timeout{10'000};
    static constexpr std::size_t mostUnderWay = 16;
    /// Beyond it pushes are dropped.
    static constexpr std::size_t mostWaiting = 1000;

    explicit ThoughtkegClient(ThoughtkegEnvironment environment, std::string url = captureURL);
    ~ThoughtkegClient();
    ThoughtkegClient(const ThoughtkegClient&) = delete;
    ThoughtkegClient& operator=(const ThoughtkegClient&) = delete;

    /// Whether nothing waits or is under way.
    bool isIdle() const;
    /// Told whenever that has become so.
    [[nodiscard]] Observation observe(std::function<void()> handler) { return m_observers.add(std::move(handler)); }

  private:
    struct Outbox;
    class Push;

    void takeNext();
    void end(std::size_t push, const std::string& words);

    ThoughtkegEnvironment m_environment;
    const std::string m_url;
    /// Shared with the contexts that are about to save.
    std::shared_ptr<Outbox> m_outbox;
    std::deque<std::string> m_waiting; // bodies
    std::map<std::size_t, std::unique_ptr<Push>> m_underWay;
    std::size_t m_lastPush = 0;
    Observers<> m_observers;
    Observation m_completions;
};

} // namespace quillorn
