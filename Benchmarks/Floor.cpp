// The floor below the list of tasks: what SQLite and the JSON library take for it with nothing else around. Whole
// tables in bulk, stitched by row key, written to memory in the form of GET /api/tasks. It shares no code with the
// program, so that it also checks what that one answers.

#include "Stopwatch.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <fmt/core.h>
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>
#include <sqlite3.h>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Key = std::int64_t;
using Microseconds = std::int64_t; // since 1970

constexpr Microseconds absent = INT64_MIN;

/// A text in the arena.
struct Text {
    std::uint32_t at = 0;
    std::uint32_t size = 0;
    bool present = false;
};

using Identifier = std::array<std::uint8_t, 16>;

struct Task {
    Identifier id;
    Text title;
    Text description;
    Text sourceTitle;
    Text sourceURL;
    Microseconds dueDate;
    Microseconds completedAt;
    Microseconds createdAt;
    Microseconds updatedAt;
    std::int64_t priority;
    std::int64_t status;
    std::int64_t sortOrder;
    Key key = 0; // 0: no such row
    Key project;
    Key parent;
    Microseconds spent = 0;
    std::int32_t subtasks = 0;
    std::int32_t completedSubtasks = 0;
    std::size_t firstTag = 0; // in Store::links
    std::size_t tagCount = 0;
};

struct Project {
    Identifier id;
    Key client;
    bool isHidden;
};

struct Tag {
    Identifier id;
    Text name;
    Text color;
    Microseconds createdAt;
    Microseconds updatedAt;
    std::int64_t taskCount = 0;
};

/// Rows by key: keys are given out from 1 on and hardly ever missing.
template <class Row>
Row& at(std::vector<Row>& rows, Key key) {
    if (rows.size() <= static_cast<std::size_t>(key))
        rows.resize(static_cast<std::size_t>(key) + 1);
    return rows[static_cast<std::size_t>(key)];
}

class Statement {
  public:
    Statement(sqlite3* database, const char* sql) {
        if (sqlite3_prepare_v2(database, sql, -1, &m_statement, nullptr) != SQLITE_OK)
            throw std::runtime_error(sqlite3_errmsg(database));
    }
    ~Statement() { sqlite3_finalize(m_statement); }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    bool step() {
        const int result = sqlite3_step(m_statement);
        if (result != SQLITE_ROW && result != SQLITE_DONE)
            throw std::runtime_error(sqlite3_errmsg(sqlite3_db_handle(m_statement)));
        return result == SQLITE_ROW;
    }
    std::int64_t integer(int column) const { return sqlite3_column_int64(m_statement, column); }
    Microseconds date(int column) const {
        return sqlite3_column_type(m_statement, column) == SQLITE_NULL ? absent : integer(column);
    }
    void identifier(int column, Identifier& id) const {
        std::memcpy(id.data(), sqlite3_column_blob(m_statement, column), id.size());
    }
    Text text(int column, std::string& arena) const {
        const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(m_statement, column));
        if (bytes == nullptr)
            return {};
        const auto size = static_cast<std::uint32_t>(sqlite3_column_bytes(m_statement, column));
        const Text text{static_cast<std::uint32_t>(arena.size()), size, true};
        arena.append(bytes, size);
        return text;
    }

  private:
    sqlite3_stmt* m_statement = nullptr;
};

/// Everything that the list needs. Reading again keeps the memory.
struct Store {
    std::vector<Task> tasks; // by key
    std::vector<Project> projects;
    std::vector<Tag> tags;
    std::vector<Key> links; // tags, in the order of the tasks
    std::vector<Key> order; // of the tasks in the list
    std::string texts;

    void read(sqlite3* database, Microseconds now);

  private:
    void readProjects(sqlite3* database);
    void readTasks(sqlite3* database);
    void readTags(sqlite3* database);
    void readEntries(sqlite3* database, Microseconds now);
    void arrange();
};

void Store::read(sqlite3* database, Microseconds now) {
    for (auto* keys : {&links, &order})
        keys->clear();
    tasks.clear();
    projects.clear();
    tags.clear();
    texts.clear();
    sqlite3_exec(database, "BEGIN", nullptr, nullptr, nullptr);
    readProjects(database);
    readTasks(database);
    readTags(database);
    readEntries(database, now);
    sqlite3_exec(database, "COMMIT", nullptr, nullptr, nullptr);
    arrange();
}

void Store::readProjects(sqlite3* database) {
    std::vector<char> archivedClients;
    Statement clients(database, "SELECT key, isArchived FROM Client");
    while (clients.step())
        at(archivedClients, clients.integer(0)) = clients.integer(1) != 0;
    Statement rows(database, "SELECT key, id, client, isArchived FROM Project");
    while (rows.step()) {
        Project& project = at(projects, rows.integer(0));
        rows.identifier(1, project.id);
        project.client = rows.integer(2);
        project.isHidden = rows.integer(3) != 0 || (project.client != 0 && at(archivedClients, project.client) != 0);
    }
}

void Store::readTasks(sqlite3* database) {
    Statement rows(database, "SELECT key, id, title, taskDescription, dueDate, completedAt, priority, status, "
                             "sortOrder, sourceTitle, sourceURL, createdAt, updatedAt, project, parentTask "
                             "FROM ProjectTask");
    while (rows.step()) {
        const Key key = rows.integer(0);
        Task& task = at(tasks, key);
        task.key = key;
        rows.identifier(1, task.id);
        task.title = rows.text(2, texts);
        task.description = rows.text(3, texts);
        task.dueDate = rows.date(4);
        task.completedAt = rows.date(5);
        task.priority = rows.integer(6);
        task.status = rows.integer(7);
        task.sortOrder = rows.integer(8);
        task.sourceTitle = rows.text(9, texts);
        task.sourceURL = rows.text(10, texts);
        task.createdAt = rows.integer(11);
        task.updatedAt = rows.integer(12);
        task.project = rows.integer(13);
        task.parent = rows.integer(14);
    }
}

void Store::readTags(sqlite3* database) {
    Statement rows(database, "SELECT key, id, name, color, createdAt, updatedAt FROM Tag");
    while (rows.step()) {
        Tag& tag = at(tags, rows.integer(0));
        rows.identifier(1, tag.id);
        tag.name = rows.text(2, texts);
        tag.color = rows.text(3, texts);
        tag.createdAt = rows.integer(4);
        tag.updatedAt = rows.integer(5);
    }
    Statement pairs(database, "SELECT task, tag FROM ProjectTask_Tag ORDER BY task, tag");
    while (pairs.step()) {
        Task& task = at(tasks, pairs.integer(0));
        const Key tag = pairs.integer(1);
        if (task.tagCount++ == 0)
            task.firstTag = links.size();
        links.push_back(tag);
        ++at(tags, tag).taskCount;
    }
}

void Store::readEntries(sqlite3* database, Microseconds now) {
    Statement rows(database, "SELECT task, startTime, endTime FROM TimeEntry");
    while (rows.step()) {
        const Key task = rows.integer(0);
        if (task == 0)
            continue;
        const Microseconds end = rows.date(2);
        at(tasks, task).spent += (end == absent ? now : end) - rows.integer(1);
    }
}

void Store::arrange() {
    for (const Task& task : tasks) {
        if (task.key == 0)
            continue;
        if (task.parent != 0) {
            Task& parent = at(tasks, task.parent);
            ++parent.subtasks;
            parent.completedSubtasks += task.completedAt != absent;
        }
        if (task.project == 0 || !at(projects, task.project).isHidden)
            order.push_back(task.key);
    }
    // Absent dates come first, as SQLite has it; by key among equals, which is how they stand.
    std::vector<std::pair<Microseconds, Key>> dated;
    dated.reserve(order.size());
    for (const Key key : order)
        dated.emplace_back(at(tasks, key).dueDate, key);
    std::sort(dated.begin(), dated.end());
    for (std::size_t i = 0; i < order.size(); ++i)
        order[i] = dated[i].second;
}

using Writer = rapidjson::PrettyWriter<rapidjson::StringBuffer>;

void putTwo(char* out, unsigned value) {
    out[0] = static_cast<char>('0' + value / 10);
    out[1] = static_cast<char>('0' + value % 10);
}

class ListWriter {
  public:
    ListWriter(Store& store, rapidjson::StringBuffer& buffer, Microseconds now)
        : m_store(store),
          m_writer(buffer),
          m_now(now) {
        m_writer.SetIndent(' ', 2);
    }

    void write() {
        m_writer.StartArray();
        for (const Key key : m_store.order)
            write(at(m_store.tasks, key));
        m_writer.EndArray();
    }

  private:
    template <std::size_t Size>
    void key(const char (&name)[Size]) {
        m_writer.Key(name, static_cast<rapidjson::SizeType>(Size - 1));
    }
    void text(const Text& value) { m_writer.String(m_store.texts.data() + value.at, value.size); }
    template <std::size_t Size>
    void optionalText(const char (&name)[Size], const Text& value) {
        if (!value.present)
            return;
        key(name);
        text(value);
    }
    template <std::size_t Size>
    void date(const char (&name)[Size], Microseconds value);
    template <std::size_t Size>
    void identifier(const char (&name)[Size], const Identifier& id);
    void write(const Task& task);
    void write(const Tag& tag);
    std::int64_t depth(const Task& task) const;

    Store& m_store;
    Writer m_writer;
    Microseconds m_now;
};

template <std::size_t Size>
void ListWriter::date(const char (&name)[Size], Microseconds value) {
    if (value == absent)
        return;
    using namespace std::chrono;
    const auto time = floor<seconds>(sys_time<microseconds>(microseconds(value)));
    const auto day = floor<days>(time);
    const year_month_day civil{day};
    const auto second = static_cast<unsigned>((time - day).count());
    const auto year = static_cast<unsigned>(static_cast<int>(civil.year()));
    char out[] = "0000-00-00T00:00:00Z";
    putTwo(out, year / 100);
    putTwo(out + 2, year % 100);
    putTwo(out + 5, static_cast<unsigned>(civil.month()));
    putTwo(out + 8, static_cast<unsigned>(civil.day()));
    putTwo(out + 11, second / 3600);
    putTwo(out + 14, second / 60 % 60);
    putTwo(out + 17, second % 60);
    key(name);
    m_writer.String(out, sizeof out - 1);
}

template <std::size_t Size>
void ListWriter::identifier(const char (&name)[Size], const Identifier& id) {
    constexpr char digits[] = "0123456789ABCDEF";
    char out[36];
    char* to = out;
    for (std::size_t i = 0; i < id.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10)
            *to++ = '-';
        *to++ = digits[id[i] >> 4];
        *to++ = digits[id[i] & 15];
    }
    key(name);
    m_writer.String(out, sizeof out);
}

std::int64_t ListWriter::depth(const Task& task) const {
    std::int64_t depth = 0;
    for (Key parent = task.parent; parent != 0; parent = at(m_store.tasks, parent).parent)
        ++depth;
    return depth;
}

void ListWriter::write(const Tag& tag) {
    m_writer.StartObject();
    key("color"), text(tag.color);
    date("createdAt", tag.createdAt);
    identifier("id", tag.id);
    key("name"), text(tag.name);
    key("taskCount"), m_writer.Int64(tag.taskCount);
    date("updatedAt", tag.updatedAt);
    m_writer.EndObject();
}

void ListWriter::write(const Task& task) {
    const bool isCompleted = task.completedAt != absent;
    m_writer.StartObject();
    date("completedAt", task.completedAt);
    key("completedSubtaskCount"), m_writer.Int64(task.completedSubtasks);
    date("createdAt", task.createdAt);
    key("depth"), m_writer.Int64(depth(task));
    optionalText("description", task.description);
    date("dueDate", task.dueDate);
    identifier("id", task.id);
    key("isCompleted"), m_writer.Bool(isCompleted);
    key("isOverdue"), m_writer.Bool(task.dueDate != absent && !isCompleted && task.dueDate < m_now);
    if (task.parent != 0)
        identifier("parentTaskId", at(m_store.tasks, task.parent).id);
    key("priority"), m_writer.Int64(task.priority);
    if (task.project != 0)
        identifier("projectId", at(m_store.projects, task.project).id);
    key("sortOrder"), m_writer.Int64(task.sortOrder);
    optionalText("sourceTitle", task.sourceTitle);
    optionalText("sourceURL", task.sourceURL);
    key("status"), m_writer.Int64(task.status);
    key("subtaskCount"), m_writer.Int64(task.subtasks);
    key("tags");
    m_writer.StartArray();
    for (std::size_t i = 0; i < task.tagCount; ++i)
        write(at(m_store.tags, m_store.links[task.firstTag + i]));
    m_writer.EndArray();
    key("title"), text(task.title);
    key("totalTimeSpent"), m_writer.Double(static_cast<double>(task.spent) / 1e6);
    date("updatedAt", task.updatedAt);
    m_writer.EndObject();
}

struct Options {
    std::string store;
    int repeat = 11;
    Microseconds now = 0;
    bool print = false;
};

constexpr const char* usage = "usage: quillorn-floor STORE [--repeat N] [--now SECONDS] [--print]\n"
                              "Prints the medians of N rounds in milliseconds as JSON; with --print the list instead.\n"
                              "SECONDS since 1970 stand for the present in isOverdue and in running time entries.\n";

std::int64_t positive(std::string_view text) {
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || value <= 0)
        throw std::runtime_error(fmt::format("not a positive number: {}", text));
    return value;
}

Options parsed(int argc, char** argv) {
    Options options;
    options.now =
        std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::system_clock::now().time_since_epoch())
            .count();
    for (int i = 1; i < argc; ++i) {
        const std::string_view name = argv[i];
        if (name == "--print")
            options.print = true;
        else if (name == "--repeat" && i + 1 < argc)
            options.repeat = static_cast<int>(positive(argv[++i]));
        else if (name == "--now" && i + 1 < argc)
            options.now = positive(argv[++i]) * 1'000'000;
        else if (options.store.empty() && !name.starts_with("-"))
            options.store = name;
        else
            throw std::runtime_error(fmt::format("unexpected argument {}", name));
    }
    if (options.store.empty())
        throw std::runtime_error("no store given");
    return options;
}

void run(const Options& options) {
    sqlite3* database = nullptr;
    if (sqlite3_open_v2(options.store.c_str(), &database, SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX, nullptr) !=
        SQLITE_OK)
        throw std::runtime_error(sqlite3_errmsg(database));
    // Both keep their memory from round to round: fresh pages are the operating system's cost.
    Store store;
    rapidjson::StringBuffer buffer;
    Phase reading;
    Phase writing;
    for (int round = 0; round < (options.print ? 1 : options.repeat); ++round) {
        Stopwatch stopwatch;
        store.read(database, options.now);
        reading.add(stopwatch.lap());
        buffer.Clear();
        ListWriter(store, buffer, options.now).write();
        writing.add(stopwatch.lap());
    }
    sqlite3_close(database);
    if (options.print)
        std::fwrite(buffer.GetString(), 1, buffer.GetSize(), stdout);
    else
        fmt::print("{{\"bytes\":{},\"read\":{:.3f},\"write\":{:.3f},\"total\":{:.3f},\"cpu\":{:.3f},\"cpuRead\":{:.3f},"
                   "\"cpuWrite\":{:.3f}}}\n",
                   buffer.GetSize(), reading.wall(), writing.wall(), reading.wall() + writing.wall(),
                   reading.cpu() + writing.cpu(), reading.cpu(), writing.cpu());
}

} // namespace

int main(int argc, char** argv) {
    Options options;
    try {
        options = parsed(argc, argv);
    } catch (const std::exception& error) {
        fmt::print(stderr, "{}\n{}", error.what(), usage);
        return 2;
    }
    try {
        run(options);
    } catch (const std::exception& error) {
        fmt::print(stderr, "{}\n", error.what());
        return 1;
    }
    return 0;
}
