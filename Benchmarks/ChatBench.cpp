// What an answer of a model costs on its way through HttpClient, AIService and ChatEngine, beside a bare loop of
// libcurl and RapidJSON over the same bytes; and what the tools of a chat cost, beside reading the tables that they
// read.

#include "AI/ChatEngine.h"
#include "AI/ToolExecutor.h"
#include "HTTP/HttpErrors.h"
#include "HTTP/HttpParser.h"
#include "HTTP/Socket.h"
#include "Models/Client.h"
#include "Models/Project.h"
#include "Models/ProjectTotals.h"
#include "Models/SchemaVersions.h"
#include "Platform/Calendar.h"
#include "Platform/Clock.h"
#include "Platform/Crypto.h"
#include "Platform/HttpClient.h"
#include "Platform/NotificationCenter.h"
#include "Platform/RunLoop.h"
#include "Platform/SettingsStore.h"
#include "Platform/SystemLog.h"
#include "Platform/TemporaryDirectory.h"
#include "Platform/Text.h"
#include "Stopwatch.h"
#include "Store/ModelContext.h"

#include <csignal>
#include <curl/curl.h>
#include <fmt/core.h>
#include <rapidjson/document.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace quillorn;

constexpr int chunks = 10'000;
constexpr int rounds = 15;

double processTime() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

/// Answers every request with the same stream; its time counts for nobody.
class Server {
  public:
    Server() : m_listener(Socket::listenSocket(0, true, 16, "127.0.0.1")), m_child(::fork()) {
        if (m_child != 0)
            return;
        std::string answer = "HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n";
        for (int i = 0; i < chunks; ++i)
            answer += R"(data: {"id":"chatcmpl-1","object":"chat.completion.chunk","created":1,"model":"m","choices":)"
                      R"([{"index":0,"delta":{"content":" word"},"finish_reason":null}]})"
                      "\n\n";
        answer += "data: [DONE]\n\n";
        while (true)
            try {
                Socket client = m_listener.acceptClient();
                (void)HttpParser().readHttpRequest(client);
                client.writeBytes(answer);
                client.endWriting();
                client.readByte();
            } catch (const std::exception&) {
                // The client has it all.
            }
    }
    ~Server() {
        ::kill(m_child, SIGKILL);
        ::waitpid(m_child, nullptr, 0);
    }
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;
    std::string url() const { return fmt::format("http://127.0.0.1:{}", m_listener.boundPort()); }

  private:
    Socket m_listener;
    pid_t m_child;
};

struct Bare {
    std::string line;
    std::string text;

    static std::size_t take(char* bytes, std::size_t, std::size_t count, void* self) {
        auto& bare = *static_cast<Bare*>(self);
        for (std::string_view rest(bytes, count); !rest.empty();) {
            const std::size_t end = rest.find('\n');
            bare.line += rest.substr(0, end);
            if (end == std::string_view::npos)
                break;
            bare.readLine();
            rest.remove_prefix(end + 1);
        }
        return count;
    }
    void readLine() {
        rapidjson::Document chunk;
        if (line.starts_with("data: ") && !chunk.Parse(line.c_str() + 6).HasParseError() && chunk.IsObject())
            text += chunk["choices"][0]["delta"]["content"].GetString();
        line.clear();
    }
};

std::size_t readBare(CURL* curl, const std::string& url) {
    Bare bare;
    curl_easy_setopt(curl, CURLOPT_URL, url.c_str());
    curl_easy_setopt(curl, CURLOPT_POSTFIELDS, "{}");
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, &Bare::take);
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, &bare);
    curl_easy_perform(curl);
    return bare.text.size();
}

struct World {
    explicit World(const std::filesystem::path& store)
        : container(openContainer({.name = "Quillorn", .url = store, .cloudContainerIdentifier = {}},
                                  {.random = random, .notifications = notifications}, log)) {}

    SystemRandom random;
    NotificationCenter notifications;
    StandardErrorLog log;
    SystemClock clock;
    Calendar calendar{"UTC", "en_US"};
    Text text{"en_US"};
    RunLoop loop{log};
    std::unique_ptr<ModelContainer> container;
    TemporaryDirectory folder{random};
    FileSettings settings{folder / "settings.json", log};
    HttpClient client{loop};
};

Task<> take(AnswerStream<std::string> stream, std::size_t& size, RunLoop& loop) {
    for (auto text = co_await stream.next(); text; text = co_await stream.next())
        size += text->size();
    loop.stop();
}

void compareStreams(World& world) {
    const Server server;
    world.settings.set("aiEndpoint", server.url());
    world.settings.set("aiModel", "m");
    ModelContext context(*world.container);
    const ChatContext chat = ChatContext::of(*context.fetch<Client>().front());
    ChatEngine engine({world.client, world.settings, context, world.loop, world.clock, world.calendar, world.text});
    CURL* curl = curl_easy_init();
    std::vector<double> ours;
    std::vector<double> theirs;
    for (int round = 0; round < rounds; ++round) {
        double start = processTime();
        const std::size_t bare = readBare(curl, server.url());
        theirs.push_back(processTime() - start);
        start = processTime();
        std::size_t size = 0;
        TaskScope scope;
        scope.start(take(engine.sendMessage("Hi", {}, chat), size, world.loop));
        world.loop.run();
        ours.push_back(processTime() - start);
        if (size != bare)
            throw std::runtime_error("the texts differ");
    }
    curl_easy_cleanup(curl);
    fmt::print("stream of {} chunks: {:.1f} ms of processor time, bare {:.1f} ms, ratio {:.2f}\n", chunks, median(ours),
               median(theirs), median(ours) / median(theirs));
}

/// Steps over all rows and columns of a table.
double readTable(ModelContainer& container, const std::string& table) {
    Stopwatch stopwatch;
    ModelContext context(container);
    const StatementLoan rows = context.statement("SELECT * FROM " + table);
    std::size_t sum = 0;
    while (rows->step())
        for (int column = 0; column < 6; ++column)
            sum += rows->text(column).size();
    (void)sum;
    return stopwatch.lap().cpu;
}

void compareTools(World& world) {
    std::optional<ChatContext> chat;
    std::int64_t most = -1;
    ModelContext context(*world.container);
    const auto clients = context.fetch<Client>();
    const ClientTotalsTable totals(context, clients, world.clock.now());
    for (const Client* client : clients)
        if (totals.of(*client).totalTaskCount > most) {
            most = totals.of(*client).totalTaskCount;
            chat = ChatContext::of(*client);
        }
    const ToolExecutor tools({*world.container, world.clock, world.calendar, world.text}, *chat);
    const std::pair<const char*, std::vector<std::string>> all[] = {
        {"list_projects", {"Project", "ProjectTask", "TimeEntry"}},
        {"list_tasks", {"Project", "ProjectTask"}},
        {"list_notes", {"Project", "Note"}},
        {"get_time_summary", {"ProjectTask", "TimeEntry"}},
        {"list_time_entries", {"ProjectTask", "TimeEntry"}},
        {"get_recent_activity", {"ProjectTask", "TimeEntry"}}};
    for (const auto& [name, tables] : all) {
        std::vector<double> ours;
        std::vector<double> floor;
        for (int round = 0; round < rounds; ++round) {
            double sum = 0;
            for (const std::string& table : tables)
                sum += readTable(*world.container, table);
            floor.push_back(sum);
            Stopwatch stopwatch;
            (void)tools.execute(name, R"({"search":"e"})");
            ours.push_back(stopwatch.lap().cpu);
        }
        fmt::print("{}: {:.2f} ms, its tables {:.2f} ms, ratio {:.2f}\n", name, median(ours), median(floor),
                   median(ours) / median(floor));
    }
    fmt::print("in the chat of a client with {} tasks\n", most);
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        fmt::print(stderr, "usage: quillorn-chat-bench STORE\n");
        return 2;
    }
    ::setenv("no_proxy", "127.0.0.1", 1);
    World world(arguments[1]);
    compareStreams(world);
    compareTools(world);
    return 0;
}
