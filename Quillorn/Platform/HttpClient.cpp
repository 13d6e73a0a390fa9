#include "Platform/HttpClient.h"

#include "Platform/HttpAddress.h"
#include "Platform/HttpDelivery.h"

#include <algorithm>
#include <array>
#include <curl/curl.h>
#include <fmt/core.h>
#include <mutex>
#include <thread>

namespace quillorn {

namespace {

constexpr int mostRedirects = 10;

template <auto Release>
struct Releaser {
    template <typename Handle>
    void operator()(Handle* handle) const {
        Release(handle);
    }
};
using EasyHandle = std::unique_ptr<CURL, Releaser<curl_easy_cleanup>>;
using MultiHandle = std::unique_ptr<CURLM, Releaser<curl_multi_cleanup>>;
using HeaderList = std::unique_ptr<curl_slist, Releaser<curl_slist_free_all>>;

bool hasControlCharacter(std::string_view text) {
    return std::ranges::any_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
}

void checkHeaders(const HttpCall& call) {
    for (const auto& [name, value] : call.headers)
        if (hasControlCharacter(name) || hasControlCharacter(value))
            throw HttpFailure(fmt::format("The value for {} holds a line end or another control character", name));
}

void append(HeaderList& list, const std::string& line) {
    curl_slist* longer = curl_slist_append(list.get(), line.c_str());
    if (longer == nullptr)
        throw std::bad_alloc();
    (void)list.release();
    list.reset(longer);
}

/// Those of the call; a name with nothing behind its colon keeps the library from adding its own.
HeaderList headersOf(const HttpCall& call) {
    HeaderList list;
    for (const char* unwanted : {"Accept:", "Expect:", "Content-Type:"})
        if (std::ranges::none_of(call.headers, [&](const auto& each) { return each.first + ":" == unwanted; }))
            append(list, unwanted);
    for (const auto& [name, value] : call.headers)
        append(list, value.empty() ? name + ";" : fmt::format("{}: {}", name, value));
    return list;
}

/// What is thrown must not pass through the library.
template <typename Work>
std::size_t guarded(std::size_t count, std::string& failure, const Work& work) {
    try {
        work();
    } catch (const std::exception& error) {
        failure = error.what();
    }
    return failure.empty() ? count : 0; // less than there was ends the transfer
}

} // namespace

/// One call, as the thread of the transfers has it.
class HttpClient::Transfer final : public HttpDelivery {
  public:
    Transfer(std::shared_ptr<Engine> engine, MainQueue& queue, HttpCall call, HttpCallHandlers handlers)
        : HttpDelivery(queue, std::move(handlers), call.timeout),
          m_engine(std::move(engine)),
          m_call(std::move(call)) {}

    void cancel() override; // on the main thread

    CURL* makeHandle();
    CURL* handle() const { return m_handle.get(); }
    void releaseHandle() { m_handle.reset(); }
    /// Whether the call goes on, at another address.
    bool followsRedirect();
    void finish(CURLcode code);
    void fail(HttpFailure failure);

  private:
    static std::size_t takeHeader(char* bytes, std::size_t size, std::size_t count, void* transfer);
    static std::size_t takeBody(char* bytes, std::size_t size, std::size_t count, void* transfer);
    void readHeader(std::string_view line);
    void readBody(std::string_view bytes);

    const std::shared_ptr<Engine> m_engine;
    HttpCall m_call;
    EasyHandle m_handle;
    HeaderList m_headers;
    std::array<char, CURL_ERROR_SIZE> m_errorText{};
    bool m_hasAnswer = false;
    std::string m_location;
    int m_redirects = 0;
    std::optional<std::string> m_target; // of the redirect that is to be followed
    std::string m_received;              // the body so far, where it is taken as a whole
    std::size_t m_receivedTotal = 0;
    std::string m_failure; // found by ourselves in the middle of an answer
};

/// The thread of the transfers and its work.
class HttpClient::Engine : public std::enable_shared_from_this<HttpClient::Engine> {
  public:
    explicit Engine(MainQueue& queue) : m_queue(queue) {}

    std::shared_ptr<Transfer> start(HttpCall call, HttpCallHandlers handlers);
    void cancel(const std::shared_ptr<Transfer>& transfer);
    void stop();

  private:
    using Transfers = std::vector<std::shared_ptr<Transfer>>;

    void wake();
    void run();
    bool takeOrders();
    void begin(const std::shared_ptr<Transfer>& transfer);
    void settle(CURL* handle, CURLcode code);

    MainQueue& m_queue;
    std::vector<std::weak_ptr<Transfer>> m_known; // the main thread's
    std::thread m_thread;

    std::mutex m_mutex; // guards what follows
    Transfers m_started;
    Transfers m_cancelled;
    bool m_isStopping = false;
    CURLM* m_wakeable = nullptr;

    // The thread's own.
    MultiHandle m_multi;
    Transfers m_running;
};

// Transfer

void HttpClient::Transfer::cancel() {
    m_engine->cancel(std::static_pointer_cast<Transfer>(shared_from_this()));
}

CURL* HttpClient::Transfer::makeHandle() {
    m_handle.reset(curl_easy_init());
    if (!m_handle)
        throw std::bad_alloc();
    CURL* curl = m_handle.get();
    m_headers = headersOf(m_call);
    curl_easy_setopt(curl, CURLOPT_PRIVATE, this);
    curl_easy_setopt(curl, CURLOPT_URL, m_call.url.c_str());
    curl_easy_setopt(curl, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(curl, CURLOPT_HTTPHEADER, m_headers.get());
    curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
    if (m_call.isDirect)
        curl_easy_setopt(curl, CURLOPT_PROXY, "");  // not even that of the environment
    curl_easy_setopt(curl, CURLOPT_QUICK_EXIT, 1L); // a name that is being looked up holds nobody up
    curl_easy_setopt(curl, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, m_errorText.data());
    curl_easy_setopt(curl, CURLOPT_HEADERFUNCTION, &Transfer::takeHeader);
    curl_easy_setopt(curl, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, &Transfer::takeBody);
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, this);
    if (m_call.method == HttpCall::Method::post) {
        curl_easy_setopt(curl, CURLOPT_POST, 1L);
        curl_easy_setopt(curl, CURLOPT_POSTFIELDS, m_call.body.data());
        curl_easy_setopt(curl, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(m_call.body.size()));
    }
    return curl;
}

std::size_t HttpClient::Transfer::takeHeader(char* bytes, std::size_t, std::size_t count, void* transfer) {
    auto& self = *static_cast<Transfer*>(transfer);
    return guarded(count, self.m_failure, [&] { self.readHeader({bytes, count}); });
}

std::size_t HttpClient::Transfer::takeBody(char* bytes, std::size_t, std::size_t count, void* transfer) {
    auto& self = *static_cast<Transfer*>(transfer);
    return guarded(count, self.m_failure, [&] { self.readBody({bytes, count}); });
}

void HttpClient::Transfer::readHeader(std::string_view line) {
    constexpr std::string_view location = "location:";
    const bool isEnd = line == "\r\n" || line == "\n";
    if (line.starts_with("HTTP/")) {
        m_location.clear(); // of an answer before this one
    } else if (line.size() > location.size() &&
               std::ranges::equal(line.substr(0, location.size()), location, {},
                                  [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; })) {
        const std::size_t begin = line.find_first_not_of(" \t", location.size());
        const std::size_t end = line.find_last_not_of(" \t\r\n");
        m_location = begin <= end ? line.substr(begin, end - begin + 1) : "";
    }
    long status = 0;
    curl_easy_getinfo(m_handle.get(), CURLINFO_RESPONSE_CODE, &status);
    if (!isEnd || status < 200) // before 200 it was not the answer yet
        return handOver([](Inbox&) {});
    const bool isRedirect = status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
    if (isRedirect && !m_location.empty() && !m_call.isDirect)
        m_target = redirectedAddress(m_call.url, m_location);
    if (m_target)
        return handOver([](Inbox&) {});
    if (!std::exchange(m_hasAnswer, true)) // lines behind the body look the same
        handOver([&](Inbox& inbox) { inbox.status = static_cast<int>(status); });
}

void HttpClient::Transfer::readBody(std::string_view bytes) {
    m_receivedTotal += bytes.size();
    if (m_receivedTotal > largestBody)
        throw HttpFailure(fmt::format("The answer is longer than {} MiB", largestBody / (std::size_t{1024} * 1024)));
    const bool isWanted = !m_target;
    if (isWanted && !m_byLines)
        m_received += bytes;
    handOver([&](Inbox& inbox) {
        if (isWanted && m_byLines)
            inbox.body += bytes;
    });
}

bool HttpClient::Transfer::followsRedirect() {
    if (!m_target || !m_failure.empty())
        return false;
    if (++m_redirects > mostRedirects) {
        m_failure = "The server redirects without end";
        return false;
    }
    long status = 0;
    curl_easy_getinfo(m_handle.get(), CURLINFO_RESPONSE_CODE, &status);
    if (status != 307 && status != 308) {
        m_call.method = HttpCall::Method::get;
        std::erase_if(m_call.headers, [](const auto& header) { return header.first == "Content-Type"; });
    }
    m_call.url = *std::exchange(m_target, std::nullopt);
    m_location.clear();
    m_receivedTotal = 0;
    return true;
}

void HttpClient::Transfer::finish(CURLcode code) {
    if (!m_failure.empty())
        return fail(HttpFailure(m_failure));
    if (code == CURLE_UNSUPPORTED_PROTOCOL || code == CURLE_WEIRD_SERVER_REPLY)
        return fail(HttpFailure(curl_easy_strerror(code), HttpFailure::Kind::notHTTP));
    if (code != CURLE_OK)
        return fail(HttpFailure(m_errorText[0] != '\0' ? m_errorText.data() : curl_easy_strerror(code)));
    handOver([&](Inbox& inbox) {
        inbox.isEnded = true;
        if (!m_byLines)
            inbox.body = std::move(m_received);
    });
}

void HttpClient::Transfer::fail(HttpFailure failure) {
    handOver([&](Inbox& inbox) {
        inbox.isEnded = true;
        inbox.failure = std::move(failure); // copies would share their text with the other thread
    });
}

// Engine, on the main thread

std::shared_ptr<HttpClient::Transfer> HttpClient::Engine::start(HttpCall call, HttpCallHandlers handlers) {
    auto transfer = std::make_shared<Transfer>(shared_from_this(), m_queue, std::move(call), std::move(handlers));
    std::erase_if(m_known, [](const auto& each) { return each.expired(); });
    m_known.push_back(transfer);
    transfer->armTimer();
    {
        const std::lock_guard lock(m_mutex);
        m_started.push_back(transfer);
    }
    if (m_thread.joinable())
        wake();
    else
        m_thread = std::thread([this] { run(); });
    return transfer;
}

void HttpClient::Engine::cancel(const std::shared_ptr<Transfer>& transfer) {
    if (transfer->isOver())
        return;
    transfer->end();
    {
        const std::lock_guard lock(m_mutex);
        m_cancelled.push_back(transfer);
    }
    wake();
}

void HttpClient::Engine::stop() {
    for (const auto& known : m_known)
        if (const auto transfer = known.lock())
            transfer->end();
    {
        const std::lock_guard lock(m_mutex);
        m_isStopping = true;
    }
    wake();
    if (m_thread.joinable())
        m_thread.join();
    m_started.clear();
    m_cancelled.clear();
}

void HttpClient::Engine::wake() {
    const std::lock_guard lock(m_mutex);
    if (m_wakeable != nullptr) // before, the thread looks for orders anyway
        curl_multi_wakeup(m_wakeable);
}

// Engine, on its thread

void HttpClient::Engine::run() {
    static std::once_flag initialised;
    std::call_once(initialised, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
    m_multi.reset(curl_multi_init());
    {
        const std::lock_guard lock(m_mutex);
        m_wakeable = m_multi.get();
    }
    constexpr int longestRest = 3'600'000; // milliseconds; new orders wake us
    while (takeOrders()) {
        int running = 0;
        curl_multi_perform(m_multi.get(), &running);
        int left = 0;
        while (const CURLMsg* message = curl_multi_info_read(m_multi.get(), &left))
            if (message->msg == CURLMSG_DONE)
                settle(message->easy_handle, message->data.result);
        curl_multi_poll(m_multi.get(), nullptr, 0, longestRest, nullptr);
    }
    for (const auto& transfer : m_running)
        curl_multi_remove_handle(m_multi.get(), transfer->handle());
    m_running.clear();
    const std::lock_guard lock(m_mutex);
    m_wakeable = nullptr;
    m_multi.reset();
}

bool HttpClient::Engine::takeOrders() {
    Transfers started;
    Transfers cancelled;
    {
        const std::lock_guard lock(m_mutex);
        if (m_isStopping)
            return false;
        started.swap(m_started);
        cancelled.swap(m_cancelled);
    }
    for (const auto& transfer : started)
        begin(transfer);
    for (const auto& transfer : cancelled)
        if (std::erase(m_running, transfer) > 0) {
            curl_multi_remove_handle(m_multi.get(), transfer->handle());
            transfer->releaseHandle();
        }
    return true;
}

void HttpClient::Engine::begin(const std::shared_ptr<Transfer>& transfer) {
    try {
        curl_multi_add_handle(m_multi.get(), transfer->makeHandle());
        m_running.push_back(transfer);
    } catch (const std::exception& error) {
        transfer->fail(HttpFailure(error.what()));
    }
}

void HttpClient::Engine::settle(CURL* handle, CURLcode code) {
    const auto found = std::ranges::find(m_running, handle, &Transfer::handle);
    if (found == m_running.end())
        return;
    const std::shared_ptr<Transfer> transfer = std::move(*found);
    m_running.erase(found);
    curl_multi_remove_handle(m_multi.get(), handle);
    if (code == CURLE_OK && transfer->followsRedirect())
        return begin(transfer);
    transfer->finish(code);
    transfer->releaseHandle();
}

// The client

HttpClient::Running::~Running() {
    if (m_transfer)
        m_transfer->cancel();
}

HttpClient::Running& HttpClient::Running::operator=(Running&& other) noexcept {
    std::swap(m_transfer, other.m_transfer);
    const Running former = std::move(other);
    return *this;
}

HttpClient::HttpClient(MainQueue& queue) : m_engine(std::make_shared<Engine>(queue)) {}

HttpClient::~HttpClient() {
    m_engine->stop();
}

HttpClient::Running HttpClient::start(HttpCall call, HttpCallHandlers handlers) {
    if (!hostOfAddress(call.url))
        throw InvalidURL();
    checkHeaders(call);
    return Running(m_engine->start(std::move(call), std::move(handlers)));
}

std::optional<std::string> HttpClient::hostOf(const std::string& url) {
    return hostOfAddress(url);
}

} // namespace quillorn
