#include "AI/AIService.h"

#include "AI/AIServiceError.h"
#include "AI/ChatStreamReader.h"
#include "AI/JsonShapes.h"
#include "Models/Settings.h"
#include "Platform/HttpClient.h"
#include "Platform/Text.h"
#include "Platform/UTF8.h"

#include <algorithm>
#include <fmt/core.h>
#include <fmt/ranges.h>

namespace quillorn {

using std::chrono::seconds;

namespace {

constexpr seconds streamPatience{120};
constexpr seconds modelListPatience{5};
constexpr std::size_t longestShownMessage = 200; // characters
constexpr std::size_t enoughOfAnError = 500;

/// The ids of a list of models; absent for what is none.
std::optional<std::vector<std::string>> modelIds(const std::string& body) {
    Json list;
    try {
        list = Json::parse(body);
    } catch (const JsonError&) {
        return std::nullopt;
    }
    const Json::Array* models = objectsIn(list, "data");
    if (models == nullptr)
        return std::nullopt;
    std::vector<std::string> ids;
    for (const Json& model : *models)
        if (const Json* id = model.find("id"); id != nullptr && id->asString() != nullptr)
            ids.push_back(*id->asString());
    return ids;
}

/// The text of a whole answer.
std::string contentOf(const std::string& body) {
    try {
        const Json answer = Json::parse(body);
        const Json::Array* choices = objectsIn(answer, "choices");
        const Json* message = choices != nullptr && !choices->empty() ? choices->front().find("message") : nullptr;
        const Json* content = message != nullptr ? message->find("content") : nullptr;
        if (content != nullptr && content->asString() != nullptr)
            return *content->asString();
    } catch (const JsonError&) {
        // As little of an answer as one of another shape.
    }
    throw AIServiceError::invalidResponse();
}

} // namespace

AIServiceError AIServiceError::httpError(int status, std::string message) {
    std::string description = fmt::format("HTTP error {}", status);
    if (!message.empty())
        description += fmt::format(": {}", characterPrefix(message, longestShownMessage));
    return {Kind::httpError, description, status, std::move(message)};
}

/// Takes a stream from its server and gives it on, until it is let go.
class AIService::Source : public std::enable_shared_from_this<AIService::Source> {
  public:
    Source(std::function<void(StreamEvent)> deliver, std::function<void(std::exception_ptr)> end,
           std::shared_ptr<int> streams)
        : m_reader(std::move(deliver)),
          m_end(std::move(end)),
          m_streams(std::move(streams)) {
        ++*m_streams;
    }
    ~Source() { --*m_streams; }
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;

    void start(HttpClient& client, HttpCall call) {
        // Held while it works: the one who takes the stream may let go of it in the middle of a line.
        const auto with = [source = weak_from_this()](auto work) {
            return [source, work](const auto&... arguments) {
                if (const auto self = source.lock())
                    work(*self, arguments...);
            };
        };
        HttpCallHandlers handlers;
        handlers.onStatus = with([](Source& self, int status) { self.m_status = status; });
        handlers.onLine = with([](Source& self, std::string_view line) { self.read(line); });
        handlers.onEnd = with(
            [](Source& self, const std::optional<HttpFailure>& failure, const std::string&) { self.end(failure); });
        m_call = client.start(std::move(call), std::move(handlers));
    }

    void fail(std::exception_ptr error) {
        m_call = {};
        m_end(std::move(error));
    }

  private:
    void read(std::string_view line) {
        if (m_status == 200) {
            if (!m_reader.read(line))
                end(std::nullopt);
            return;
        }
        m_error += line;
        m_errorCharacters += characterCount(line);
        if (m_errorCharacters > enoughOfAnError)
            end(std::nullopt);
    }

    void end(const std::optional<HttpFailure>& failure) {
        if (failure && failure->kind() == HttpFailure::Kind::notHTTP)
            return fail(std::make_exception_ptr(AIServiceError::invalidResponse()));
        if (failure)
            return fail(std::make_exception_ptr(*failure));
        if (m_status != 200)
            return fail(std::make_exception_ptr(AIServiceError::httpError(m_status, repairedUTF8(m_error))));
        m_reader.finish();
        fail(nullptr);
    }

    ChatStreamReader m_reader;
    std::function<void(std::exception_ptr)> m_end;
    std::shared_ptr<int> m_streams;
    HttpClient::Running m_call;
    int m_status = 0;
    std::string m_error;
    std::size_t m_errorCharacters = 0;
};

AIService::AIService(HttpClient& client, SettingsStore& settings) : m_client(client), m_settings(settings) {}

bool AIService::isConfigured(std::string_view endpoint, std::string_view model) {
    return !trimWhitespaceAndNewlines(endpoint).empty() && !trimWhitespaceAndNewlines(model).empty();
}

bool AIService::isConfigured(SettingsStore& settings) {
    return isConfigured(Settings(settings).text(setting("aiEndpoint")), Settings(settings).text(setting("aiModel")));
}

HttpCall AIService::call(std::string_view path, seconds timeout) const {
    HttpCall call;
    call.url = Settings(m_settings).text(setting("aiEndpoint")).append(path);
    call.timeout = timeout;
    if (const std::string key = Settings(m_settings).text(setting("aiApiKey")); !key.empty())
        call.headers.emplace_back("Authorization", "Bearer " + key);
    return call;
}

HttpCall AIService::chatCall(Json::Array messages, Json::Array tools, bool streams, seconds timeout) const {
    HttpCall call = this->call("/chat/completions", timeout);
    call.method = HttpCall::Method::post;
    call.headers.emplace_back("Content-Type", "application/json");
    Json::Object body{{"model", Settings(m_settings).text(setting("aiModel"))},
                      {"messages", std::move(messages)},
                      {"stream", streams}};
    if (!tools.empty())
        body.emplace("tools", std::move(tools));
    if (std::string effort = Settings(m_settings).text(setting("aiReasoningEffort")); !effort.empty())
        body.emplace("reasoning_effort", std::move(effort));
    call.body = Json(std::move(body)).text();
    return call;
}

std::shared_ptr<void> AIService::open(Json::Array messages, Json::Array tools, std::function<void(StreamEvent)> deliver,
                                      std::function<void(std::exception_ptr)> end) {
    auto source = std::make_shared<Source>(std::move(deliver), std::move(end), m_streams);
    try {
        source->start(m_client, chatCall(std::move(messages), std::move(tools), true, streamPatience));
    } catch (const InvalidURL&) {
        source->fail(std::make_exception_ptr(AIServiceError::invalidURL()));
    } catch (const std::runtime_error&) { // for the one who takes the stream, as all that stops it
        source->fail(std::current_exception());
    }
    return source;
}

AnswerStream<std::string> AIService::streamChat(Json::Array messages) {
    const Sequence<std::string> texts;
    auto source = open(
        std::move(messages), {},
        [texts](StreamEvent event) {
            if (auto* delta = std::get_if<TextDelta>(&event))
                texts.push(std::move(delta->text));
        },
        [texts](std::exception_ptr error) { texts.finish(std::move(error)); });
    return {texts, std::move(source)};
}

AnswerStream<StreamEvent> AIService::streamChatWithTools(Json::Array messages, Json::Array tools) {
    const Sequence<StreamEvent> events;
    auto source = open(
        std::move(messages), std::move(tools), [events](StreamEvent event) { events.push(std::move(event)); },
        [events](std::exception_ptr error) { events.finish(std::move(error)); });
    return {events, std::move(source)};
}

Task<AIService::Answer> AIService::send(HttpCall call, bool readsErrors) {
    Completion<Answer> completion;
    auto status = std::make_shared<int>(0);
    HttpCallHandlers handlers;
    handlers.onStatus = [completion, status, readsErrors](int code) mutable {
        *status = code;
        if (code != 200 && !readsErrors)
            completion.succeed({code, {}});
    };
    handlers.onEnd = [completion, status](const std::optional<HttpFailure>& failure, std::string body) mutable {
        if (failure)
            completion.fail(std::make_exception_ptr(*failure));
        else
            completion.succeed({*status, std::move(body)});
    };
    HttpClient::Running running;
    try {
        running = m_client.start(std::move(call), std::move(handlers));
    } catch (const InvalidURL&) {
        throw AIServiceError::invalidURL();
    }
    co_return co_await completion;
}

Task<std::string> AIService::completeChat(Json::Array messages, seconds timeout) {
    HttpCall call = chatCall(std::move(messages), {}, false, timeout);
    Answer answer;
    try {
        answer = co_await send(std::move(call), true);
    } catch (const HttpFailure& failure) {
        if (failure.kind() == HttpFailure::Kind::notHTTP)
            throw AIServiceError::invalidResponse();
        throw;
    }
    if (answer.status != 200)
        throw AIServiceError::httpError(answer.status, isValidUTF8(answer.body) ? answer.body : "");
    co_return contentOf(answer.body);
}

Task<std::string> AIService::modelList() {
    HttpCall call = this->call("/models", modelListPatience);
    Answer answer;
    try {
        answer = co_await send(std::move(call), false);
    } catch (const HttpFailure& failure) {
        if (failure.kind() == HttpFailure::Kind::notHTTP)
            throw AIServiceError::httpError(0, "");
        throw;
    }
    if (answer.status != 200)
        throw AIServiceError::httpError(answer.status, "");
    co_return std::move(answer.body);
}

Task<std::vector<std::string>> AIService::fetchModels() {
    const std::string body = co_await modelList();
    auto ids = modelIds(body);
    if (!ids)
        throw AIServiceError::invalidResponse();
    std::ranges::sort(*ids);
    co_return std::move(*ids);
}

Task<std::string> AIService::testConnection() {
    const std::string body = co_await modelList();
    const auto ids = modelIds(body);
    co_return ids ? fmt::format("Connected. Models: {}", fmt::join(*ids, ", ")) : "Connected successfully";
}

} // namespace quillorn
