#include "Generator/SampleStore.h"

#include "Generator/SampleText.h"
#include "Models/Client.h"
#include "Models/Note.h"
#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/SchemaVersions.h"
#include "Models/Tag.h"
#include "Models/TimeEntry.h"
#include "Platform/NotificationCenter.h"
#include "Store/ModelContext.h"

#include <algorithm>
#include <fmt/core.h>

namespace quillorn {

namespace {

using namespace std::chrono_literals;

constexpr int clientCount = 20;
constexpr int projectCount = 200;
constexpr int tagCount = 50;
constexpr int tagsPerTask = 2;
constexpr int entriesPerTask = 5;
/// The deepest level of a subtask.
constexpr int deepest = 4;
/// Tasks in one context; bounds the memory and the length of a transaction.
constexpr int batchSize = 1'000;

constexpr int days = 900; // of work

class SampleStore {
  public:
    SampleStore(const std::filesystem::path& file, std::chrono::sys_days today, std::uint64_t seed)
        : m_today(today),
          m_random(seed),
          m_container(currentSchema(), &QuillornMigrationPlan(),
                      {.name = "Quillorn", .url = file, .cloudContainerIdentifier = {}},
                      {.random = m_random, .notifications = m_notifications}) {}

    void addProjects();
    void addTasks(int count);

  private:
    /// A task of the batch and how deep it stands.
    struct Placed {
        ProjectTask* task;
        int depth;
    };

    Date someDate();
    /// Some hours after it, and not in the future.
    Date later(Date date, int hours);
    Placed addTask(ModelContext& context, const std::vector<Placed>& earlier);
    void addEntries(ModelContext& context, ProjectTask& task);
    void addComment(ModelContext& context, ProjectTask& task);
    template <class Object>
    Object* oneOf(const std::vector<Object*>& objects) {
        return objects[static_cast<std::size_t>(m_random.below(static_cast<int>(objects.size())))];
    }

    Date m_today;
    Date m_epoch = m_today - 24h * days;
    SampleRandom m_random;
    NotificationCenter m_notifications;
    ModelContainer m_container;
    std::vector<Project*> m_projects; // of the context at work
    std::vector<Tag*> m_tags;
    int m_tasks = 0;
};

Date SampleStore::someDate() {
    return m_epoch + 24h * m_random.below(days) + 1s * m_random.below(86'400) + 1us * m_random.below(1'000'000);
}

Date SampleStore::later(Date date, int hours) {
    return std::min(date + 1h * m_random.below(hours), m_today);
}

void SampleStore::addProjects() {
    ModelContext context(m_container);
    std::vector<Client*> clients;
    for (int i = 0; i < clientCount; ++i) {
        clients.push_back(&context.insert<Client>(Client::Arguments{.name = sampleWords(m_random, 1, 3)}, m_epoch));
        clients.back()->setArchived(i % clientCount == clientCount - 1);
    }
    for (int i = 0; i < projectCount; ++i) {
        Project::Arguments arguments{.name = sampleWords(m_random, 2, 4),
                                     .projectDescription = sampleProse(m_random, 120)};
        Project& project = context.insert<Project>(std::move(arguments), someDate());
        if (i % 10 != 0)
            project.setClient(oneOf(clients));
        project.setArchived(i % 20 == 19);
        project.setSortOrder(i);
    }
    for (int i = 0; i < tagCount; ++i)
        context.insert<Tag>(Tag::Arguments{.name = fmt::format("{} {}", sampleWords(m_random, 1, 1), i)}, someDate());
    context.save();
}

void SampleStore::addTasks(int count) {
    while (count > 0) {
        ModelContext context(m_container);
        m_projects = context.fetch<Project>();
        m_tags = context.fetch<Tag>();
        std::vector<Placed> batch;
        for (int left = std::min(count, batchSize); left > 0; --left)
            batch.push_back(addTask(context, batch));
        context.save();
        count -= batchSize;
    }
}

SampleStore::Placed SampleStore::addTask(ModelContext& context, const std::vector<Placed>& earlier) {
    const int number = m_tasks++;
    const Date created = someDate();
    Placed placed{.task = nullptr, .depth = 0};
    const Placed* parent = nullptr;
    if (number % 5 == 4 && !earlier.empty()) {
        parent = &earlier[static_cast<std::size_t>(m_random.below(static_cast<int>(earlier.size())))];
        if (parent->depth >= deepest)
            parent = nullptr;
    }
    ProjectTask::Arguments arguments{.title = sampleWords(m_random, 3, 8),
                                     .priority = *enumFromRaw<TaskPriority>(m_random.below(4)),
                                     .project = number % 20 == 0 ? nullptr : oneOf(m_projects)};
    if (m_random.chance(60))
        arguments.taskDescription = sampleProse(m_random, m_random.between(40, 500));
    if (m_random.chance(70))
        arguments.dueDate = created + 24h * m_random.below(60);
    if (parent != nullptr)
        arguments.project = parent->task->project();
    ProjectTask& task = context.insert<ProjectTask>(std::move(arguments), created);
    placed.task = &task;
    if (parent != nullptr) {
        task.setParentTask(parent->task);
        placed.depth = parent->depth + 1;
    }
    task.setSortOrder(number);
    if (m_random.chance(20)) {
        task.setSourceTitle(sampleWords(m_random, 2, 6));
        task.setSourceURL(fmt::format("https://mail.example/thread/{}", number));
    }
    std::vector<Tag*> tags;
    while (tags.size() < tagsPerTask)
        if (Tag* tag = oneOf(m_tags); std::find(tags.begin(), tags.end(), tag) == tags.end())
            tags.push_back(tag);
    task.setTags(tags);
    addEntries(context, task);
    if (number % 2 == 0)
        addComment(context, task);
    const bool isPast = task.dueDate() && *task.dueDate() < m_today;
    const auto status = isPast && !m_random.chance(2) ? TaskStatus::done : *enumFromRaw<TaskStatus>(m_random.below(4));
    task.setStatus(status, later(created, 900));
    return placed;
}

void SampleStore::addEntries(ModelContext& context, ProjectTask& task) {
    for (int i = 0; i < entriesPerTask; ++i) {
        TimeEntry::Arguments arguments{.task = &task, .startTime = later(task.createdAt(), 500)};
        if (m_random.chance(30))
            arguments.notes = sampleWords(m_random, 3, 10);
        TimeEntry& entry = context.insert<TimeEntry>(std::move(arguments));
        // Half of them typed in as whole minutes, half timed.
        entry.setEndTime(entry.startTime() + 1min * m_random.between(5, 180) +
                         (i % 2 == 0 ? 0us : 1us * m_random.below(60'000'000)));
    }
}

void SampleStore::addComment(ModelContext& context, ProjectTask& task) {
    context.insert<Note>(Note::Arguments{.title = "", .content = sampleProse(m_random, 150), .task = &task},
                         task.createdAt() + 1h);
}

} // namespace

void makeSampleStore(const std::filesystem::path& file, const SampleSize& size, std::chrono::sys_days today,
                     std::uint64_t seed) {
    SampleStore store(file, today, seed);
    store.addProjects();
    store.addTasks(size.tasks);
}

} // namespace quillorn
