#include "Services/ThoughtkegClient.h"

#include "Models/Client.h"
#include "Models/Note.h"
#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/Settings.h"
#include "Platform/Json.h"
#include "Platform/MainQueue.h"
#include "Platform/NotificationCenter.h"
#include "Platform/SystemLog.h"
#include "Store/ModelContext.h"

#include <algorithm>
#include <atomic>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <optional>
#include <utility>
#include <vector>

namespace quillorn {

namespace {

constexpr int accepted = 200;

std::vector<const Note*> notesOf(const ProjectTask& task) {
    std::vector<const Note*> notes(task.notes().begin(), task.notes().end());
    std::ranges::stable_sort(notes, {}, &Note::createdAt);
    return notes;
}

std::string nameOf(const Client* client) {
    return client != nullptr ? client->name() : "";
}

std::string textOf(const ProjectTask& task, const std::string& description, const std::vector<const Note*>& notes) {
    std::vector<std::string> lines;
    if (const Project* project = task.project()) {
        const Client* client = project->client();
        lines.push_back(fmt::format("**Project:** {}{}", project->name(),
                                    client != nullptr ? fmt::format(" (client: {})", client->name()) : ""));
    }
    lines.push_back("**Completed:** " + formatISO8601(*task.completedAt()));
    if (!description.empty())
        lines.push_back("\n## Description\n" + description);
    if (!notes.empty())
        lines.emplace_back("\n## Notes");
    for (const Note* note : notes)
        lines.push_back("- " + note->content());
    return fmt::format("{}", fmt::join(lines, "\n"));
}

/// What is sent of a task; absent for one that has nothing to be learnt from, or is open again.
std::optional<std::string> bodyOf(const ProjectTask& task) {
    const std::string description = task.taskDescription().value_or("");
    const std::vector<const Note*> notes = notesOf(task);
    if (!task.isCompleted() || (description.empty() && notes.empty()))
        return std::nullopt;
    const Project* project = task.project();
    const Json::Object source{{"app", "quillorn"},
                              {"taskId", task.id().string()},
                              {"project", project != nullptr ? project->name() : ""},
                              {"client", nameOf(project != nullptr ? project->client() : nullptr)}};
    return Json(Json::Object{{"title", task.title()},
                             {"body", textOf(task, description, notes)},
                             {"kind", "learning"},
                             {"source_ref", source}})
        .text();
}

bool isThisMachine(const std::string& url) {
    return HttpClient::hostOf(url) == "127.0.0.1";
}

} // namespace

/// Takes what was completed on any thread to the main thread.
struct ThoughtkegClient::Outbox : std::enable_shared_from_this<ThoughtkegClient::Outbox> {
    Outbox(ThoughtkegClient& owner, MainQueue& mainQueue, SystemLog& systemLog)
        : client(&owner),
          queue(mainQueue),
          log(systemLog) {}

    void sendOnceSaved(const ProjectTask& task) {
        ModelContainer& container = task.context().container();
        task.context().whenSaved([self = shared_from_this(), &container, id = task.id()] {
            try {
                // Of its own, as in the one that saves the notes of all its tasks would be loaded with these.
                ModelContext context(container);
                const auto* saved = context.find<ProjectTask>(id);
                if (auto body = saved != nullptr ? bodyOf(*saved) : std::nullopt)
                    self->send(std::move(*body));
            } catch (const std::exception& error) {
                self->log.log(fmt::format("Thoughtkeg push skipped: {}", error.what()));
            }
        });
    }

    void send(std::string body) {
        ++onTheirWay;
        queue.post([self = shared_from_this(), text = std::move(body)]() mutable {
            if (self->client == nullptr)
                return;
            --self->onTheirWay;
            if (self->client->m_waiting.size() < mostWaiting)
                self->client->m_waiting.push_back(std::move(text));
            else
                self->log.log("Thoughtkeg push skipped: too many wait");
            self->client->takeNext();
        });
    }

    ThoughtkegClient* client; // for the main thread
    MainQueue& queue;
    SystemLog& log;
    std::atomic<std::size_t> onTheirWay = 0;
};

/// One request, until its answer has a status.
class ThoughtkegClient::Push {
  public:
    Push(ThoughtkegClient& client, std::size_t number, std::string body)
        : m_queue(client.m_environment.mainQueue),
          m_timer(m_queue.after(
              timeout, [&client, number] { client.end(number, "Thoughtkeg push skipped: The request timed out."); })) {
        HttpCallHandlers handlers;
        handlers.onStatus = [&client, number](int status) {
            client.end(number, status == accepted ? "" : fmt::format("Thoughtkeg push rejected: HTTP {}", status));
        };
        handlers.onLine = [](std::string_view) {}; // nothing of it is kept
        handlers.onEnd = [&client, number](const std::optional<HttpFailure>& failure, const std::string&) {
            client.end(number, failure ? fmt::format("Thoughtkeg push skipped: {}", failure->what()) : "");
        };
        m_call = client.m_environment.httpClient.start({.method = HttpCall::Method::post,
                                                        .url = client.m_url,
                                                        .headers = {{"Content-Type", "application/json"}},
                                                        .body = std::move(body),
                                                        .timeout = timeout,
                                                        .isDirect = true},
                                                       std::move(handlers));
    }
    ~Push() { m_queue.cancel(m_timer); }
    Push(const Push&) = delete;
    Push& operator=(const Push&) = delete;

  private:
    MainQueue& m_queue;
    MainQueue::TimerId m_timer;
    HttpClient::Running m_call;
};

ThoughtkegClient::ThoughtkegClient(ThoughtkegEnvironment environment, std::string url)
    : m_environment(environment),
      m_url(std::move(url)),
      m_outbox(std::make_shared<Outbox>(*this, environment.mainQueue, environment.log)) {
    // On the thread of whoever completes.
    m_completions = m_environment.notifications.observe(
        quillornTaskCompleted,
        [outbox = m_outbox, &settings = m_environment.settings, to = m_url](const Notification& notification) {
            auto* const* task = std::any_cast<ProjectTask*>(&notification.object);
            if (task != nullptr && Settings(settings).boolean(setting("thoughtkegPushEnabled")) && isThisMachine(to))
                outbox->sendOnceSaved(**task);
        });
}

ThoughtkegClient::~ThoughtkegClient() {
    m_completions = {};
    m_outbox->client = nullptr;
}

bool ThoughtkegClient::isIdle() const {
    return m_outbox->onTheirWay == 0 && m_waiting.empty() && m_underWay.empty();
}

void ThoughtkegClient::takeNext() {
    while (m_underWay.size() < mostUnderWay && !m_waiting.empty()) {
        std::string body = std::move(m_waiting.front());
        m_waiting.pop_front();
        const std::size_t number = ++m_lastPush;
        m_underWay.emplace(number, std::make_unique<Push>(*this, number, std::move(body)));
    }
    if (isIdle())
        m_observers.tell();
}

/// The words are for the log; empty when all is well.
void ThoughtkegClient::end(std::size_t push, const std::string& words) {
    const auto ended = m_underWay.extract(push);
    if (ended.empty())
        return;
    if (!words.empty())
        m_environment.log.log(words);
    takeNext();
}

} // namespace quillorn
