#include "AI/ChatEngine.h"

#include "AI/ToolExecutor.h"
#include "Models/ChatMessage.h"
#include "Platform/Calendar.h"
#include "Platform/Clock.h"
#include "Store/ModelContext.h"
#include "Store/StoreError.h"

#include <array>
#include <utility>

namespace quillorn {

namespace {

constexpr std::array<std::string_view, EnumCases<ChatRole>::count> roleWords = {"system", "user", "assistant"};

Json message(ChatRole role, std::string_view content) {
    return Json::Object{{"role", roleWords[static_cast<std::size_t>(role)]}, {"content", content}};
}

} // namespace

/// The tasks of one exchange; goes with its stream.
struct ChatEngine::Exchange {
    explicit Exchange(LinkPointer pointer) : link(std::move(pointer)) {}
    ~Exchange() {
        if (link->engine != nullptr)
            link->engine->stop();
    }
    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;

    LinkPointer link;
    TaskScope tasks;
};

ChatEngine::ChatEngine(const AIEnvironment& environment)
    : m_environment(environment),
      m_service(environment.httpClient, environment.settings) {}

void ChatEngine::stop() {
    if (!m_link)
        return;
    std::exchange(m_link, nullptr)->engine = nullptr;
    m_phase = ChatEnginePhase::idle;
    m_activeTool.reset();
    m_observers.tell();
}

template <typename Work>
AnswerStream<std::string> ChatEngine::begin(const Work& work) {
    stop();
    m_link = std::make_shared<Link>(Link{this});
    auto exchange = std::make_shared<Exchange>(m_link);
    const Texts texts;
    setPhase(ChatEnginePhase::thinking);
    if (exchange->link->engine != nullptr)
        exchange->tasks.start(answer(exchange->link, texts, work(exchange->link, texts)));
    else
        texts.finish(); // stopped by somebody who was told of the beginning
    return {texts, std::move(exchange)};
}

AnswerStream<std::string> ChatEngine::sendMessage(const std::string& text, const std::vector<ChatMessage*>& earlier,
                                                  const ChatContext& chat) {
    const ChatSubject subject = ChatSubject::find(m_environment.mainContext, chat);
    Json::Array messages{
        message(ChatRole::system, subject.systemPrompt(m_environment.clock.now(), m_environment.calendar))};
    for (const ChatMessage* each : earlier)
        messages.push_back(message(each->role(), each->content()));
    messages.push_back(message(ChatRole::user, text));
    return begin([&](const LinkPointer& link, const Texts& texts) {
        return converse(link, texts, std::move(messages), std::make_shared<ToolExecutor>(executorFor(chat)));
    });
}

AnswerStream<std::string> ChatEngine::generateSummary(const DayRange& range, const ChatContext& chat) {
    saveMainContext();
    const std::string name = ChatSubject::find(m_environment.mainContext, chat).name();
    const std::string facts =
        summaryRequest(executorFor(chat), name, range, m_environment.clock.now(), m_environment.calendar);
    Json::Array messages{message(ChatRole::system, summaryPrompt), message(ChatRole::user, facts)};
    return begin(
        [&](const LinkPointer& link, const Texts& texts) { return summarise(link, texts, std::move(messages)); });
}

// The tasks. Whenever others had a say (a wait, a text given on, a change told), the exchange may be over.

Task<> ChatEngine::answer(LinkPointer link, Texts texts, Task<> work) {
    std::exception_ptr failure;
    try {
        co_await work;
    } catch (...) {
        failure = std::current_exception();
    }
    if (link->engine != nullptr)
        link->engine->stop();
    texts.finish(failure);
}

Task<> ChatEngine::converse(LinkPointer link, Texts texts, Json::Array messages, std::shared_ptr<ToolExecutor> tools) {
    for (int number = 0; number < maxToolRounds; ++number) {
        const auto stream = link->engine->m_service.streamChatWithTools(messages, ToolExecutor::definitions());
        Round round;
        bool hasResults = false;
        for (auto event = co_await stream.next(); event && link->engine != nullptr; event = co_await stream.next()) {
            if (const auto* text = std::get_if<TextDelta>(&*event)) {
                link->engine->take(*text, round);
                if (link->engine != nullptr)
                    texts.push(text->text);
            } else if (const auto* call = std::get_if<ToolCallDelta>(&*event)) {
                link->engine->take(*call, round);
            } else if (std::get<Finished>(*event).reason == FinishReason::toolCalls && !round.pending.empty()) {
                link->engine->runTools(round, messages, *tools);
                hasResults = true;
            }
            if (link->engine == nullptr)
                co_return;
        }
        if (!hasResults || link->engine == nullptr)
            co_return;
        link->engine->setPhase(ChatEnginePhase::thinking);
        if (link->engine == nullptr)
            co_return;
    }
    link->engine->setPhase(ChatEnginePhase::responding);
    const Task<> last = conclude(link, texts, messages);
    co_await last;
}

/// The answer of a model that has no tools any more.
Task<> ChatEngine::conclude(LinkPointer link, Texts texts, const Json::Array& messages) {
    if (link->engine == nullptr)
        co_return;
    const auto stream = link->engine->m_service.streamChatWithTools(messages);
    for (auto event = co_await stream.next(); event && link->engine != nullptr; event = co_await stream.next())
        if (const auto* text = std::get_if<TextDelta>(&*event))
            texts.push(text->text);
}

Task<> ChatEngine::summarise(LinkPointer link, Texts texts, Json::Array messages) {
    const auto stream = link->engine->m_service.streamChat(std::move(messages));
    for (auto text = co_await stream.next(); text && link->engine != nullptr; text = co_await stream.next()) {
        link->engine->setPhase(ChatEnginePhase::responding);
        if (link->engine != nullptr)
            texts.push(std::move(*text));
    }
}

void ChatEngine::take(const TextDelta& delta, Round& round) {
    round.text += delta.text;
    setPhase(ChatEnginePhase::responding);
}

void ChatEngine::take(const ToolCallDelta& delta, Round& round) {
    PendingCall& call = round.pending[delta.index];
    if (delta.id && !delta.id->empty())
        call.id = *delta.id;
    if (delta.name && !delta.name->empty())
        call.name = *delta.name;
    call.arguments += delta.argumentsChunk.value_or("");
    const bool isNamed = delta.name && !delta.name->empty();
    const LinkPointer link = m_link;
    setPhase(ChatEnginePhase::callingTools);
    if (isNamed && link->engine != nullptr)
        setActiveTool(delta.name);
}

void ChatEngine::runTools(const Round& round, Json::Array& messages, const ToolExecutor& tools) {
    Json::Array calls;
    for (const auto& [index, call] : round.pending) {
        Json function = Json::Object{{"name", call.name}, {"arguments", call.arguments}};
        calls.emplace_back(Json::Object{{"id", call.id}, {"type", "function"}, {"function", std::move(function)}});
    }
    Json::Object request{{"role", "assistant"}, {"tool_calls", std::move(calls)}};
    if (!round.text.empty())
        request["content"] = round.text;
    messages.emplace_back(std::move(request));
    saveMainContext(); // tools see what is saved
    const LinkPointer link = m_link;
    for (const auto& [index, call] : round.pending) {
        setActiveTool(call.name);
        if (link->engine == nullptr)
            return;
        messages.emplace_back(Json::Object{
            {"role", "tool"}, {"tool_call_id", call.id}, {"content", tools.execute(call.name, call.arguments)}});
    }
}

ToolExecutor ChatEngine::executorFor(const ChatContext& chat) const {
    return {{m_environment.mainContext.container(), m_environment.clock, m_environment.calendar, m_environment.text},
            chat};
}

void ChatEngine::saveMainContext() {
    try {
        if (m_environment.mainContext.hasChanges())
            m_environment.mainContext.save();
    } catch (const StoreError&) {
        // The changes stay there and are saved later; the model sees the state before them.
    }
}

void ChatEngine::setPhase(ChatEnginePhase phase) {
    const bool keepsTool = phase == ChatEnginePhase::callingTools || phase == ChatEnginePhase::thinking;
    const bool losesTool = !keepsTool && m_activeTool.has_value();
    if (phase == m_phase && !losesTool)
        return;
    m_phase = phase;
    if (losesTool)
        m_activeTool.reset();
    m_observers.tell();
}

void ChatEngine::setActiveTool(std::optional<std::string> name) {
    if (name == m_activeTool)
        return;
    m_activeTool = std::move(name);
    m_observers.tell();
}

} // namespace quillorn
