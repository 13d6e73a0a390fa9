#include "Platform/Task.h"

#include <cassert>

namespace quillorn {

/// A started task and whatever tasks it awaits, from its start to its end.
class TaskScope::Run : public std::enable_shared_from_this<TaskScope::Run> {
  public:
    Run(TaskScope& scope, Task<> task) : m_scope(&scope), m_task(std::move(task)) {}

    static std::weak_ptr<Run> current() {
        assert(s_current != nullptr && "only a started task can wait");
        return s_current->weak_from_this();
    }

    void start() { resume(m_task.m_handle); }

    void resume(std::coroutine_handle<> waiting) {
        if (!m_task.m_handle)
            return;
        const auto self = shared_from_this();
        Run* const outer = std::exchange(s_current, this);
        m_isRunning = true;
        waiting.resume();
        m_isRunning = false;
        s_current = outer;
        if (m_task.m_handle.done())
            return finish();
        if (m_isCancelled)
            m_task = {};
    }

    void cancel() {
        m_scope = nullptr;
        m_isCancelled = true;
        if (!m_isRunning)
            const Task<> given = std::move(m_task);
    }

  private:
    void finish() {
        const Task<> finished = std::move(m_task);
        if (m_scope != nullptr)
            std::erase(m_scope->m_runs, shared_from_this());
        finished.m_handle.promise().outcome.take();
    }

    static thread_local Run* s_current;

    /// Null once the task was given up.
    TaskScope* m_scope;
    Task<> m_task;
    bool m_isRunning = false;
    bool m_isCancelled = false;
};

thread_local TaskScope::Run* TaskScope::Run::s_current = nullptr;

void TaskScope::start(Task<> task) {
    const auto run = std::make_shared<Run>(*this, std::move(task));
    m_runs.push_back(run);
    run->start();
}

void TaskScope::cancel() {
    for (const auto& run : std::exchange(m_runs, {}))
        run->cancel();
}

Resumption::Resumption(std::coroutine_handle<> waiting) : m_run(TaskScope::Run::current()), m_waiting(waiting) {}

void Resumption::operator()() const {
    if (const auto run = m_run.lock())
        run->resume(m_waiting);
}

} // namespace quillorn
