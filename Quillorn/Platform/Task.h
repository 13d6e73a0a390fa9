#pragma once

#include <coroutine>
#include <exception>
#include <memory>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

namespace quillorn {

/// A coroutine of the main thread: work that may wait in its middle for what happens elsewhere, while the thread goes
/// on. It begins when it is awaited by another task or started by a TaskScope, and goes on where it waits when what it
/// waits for has come to the main thread.
///
/// A task that is given up ends where it waits: its frame goes, with all that it holds, and the destructors undo what
/// has to be undone. So a task needs no check whether it still matters.
template <typename T = void>
class Task;

/// Runs tasks for an object that owns it: they go with it. Belongs to the main thread.
class TaskScope {
  public:
    class Run;

    TaskScope() = default;
    ~TaskScope() { cancel(); }
    TaskScope(const TaskScope&) = delete;
    TaskScope& operator=(const TaskScope&) = delete;

    /// Runs the task until it first waits; it goes on by itself from there. An exception that leaves it reaches
    /// whoever made it go on: the caller here, later the main queue.
    void start(Task<> task);
    /// Gives up all tasks. One that is just running, and calls this, goes on until it next waits.
    void cancel();
    bool isIdle() const { return m_runs.empty(); }

  private:
    std::vector<std::shared_ptr<Run>> m_runs;
};

/// Lets the task that waits here go on; to be called on the main thread, once at most. Does nothing when the task has
/// been given up. What awaitables are made of.
class Resumption {
  public:
    /// Of the task that is just running, whose innermost coroutine is `waiting`.
    explicit Resumption(std::coroutine_handle<> waiting);
    void operator()() const;

  private:
    std::weak_ptr<TaskScope::Run> m_run;
    std::coroutine_handle<> m_waiting;
};

/// A result, once it is there: a value or what was thrown.
template <typename T>
class Outcome {
  public:
    using Value = std::conditional_t<std::is_void_v<T>, std::monostate, T>;

    bool isThere() const { return m_result.index() != 0; }
    void succeed(Value value = {})
        requires std::is_void_v<T>
    {
        m_result.template emplace<1>(std::move(value));
    }
    void succeed(Value value)
        requires(!std::is_void_v<T>)
    {
        m_result.template emplace<1>(std::move(value));
    }
    void fail(std::exception_ptr error) { m_result.template emplace<2>(std::move(error)); }
    T take() {
        if (m_result.index() == 2)
            std::rethrow_exception(std::get<2>(m_result));
        if constexpr (!std::is_void_v<T>)
            return std::move(std::get<1>(m_result));
    }

  private:
    std::variant<std::monostate, Value, std::exception_ptr> m_result;
};

/// The two ends of something that will come on the main thread, once. Copies are the same thing.
template <typename T>
class Completion {
  public:
    void succeed(Outcome<T>::Value value)
        requires(!std::is_void_v<T>)
    {
        Outcome<T> outcome;
        outcome.succeed(std::move(value));
        finish(std::move(outcome));
    }
    void succeed()
        requires std::is_void_v<T>
    {
        Outcome<T> outcome;
        outcome.succeed();
        finish(std::move(outcome));
    }
    void fail(std::exception_ptr error) {
        Outcome<T> outcome;
        outcome.fail(std::move(error));
        finish(std::move(outcome));
    }
    /// What comes second is dropped.
    void finish(Outcome<T> outcome) {
        if (m_state->outcome.isThere())
            return;
        m_state->outcome = std::move(outcome);
        if (const auto waiting = std::exchange(m_state->waiting, std::nullopt))
            (*waiting)();
    }

    /// For one task: `co_await completion` gives the value or throws.
    auto operator co_await() const {
        struct Awaiter {
            std::shared_ptr<State> state;
            bool await_ready() const noexcept { return state->outcome.isThere(); }
            void await_suspend(std::coroutine_handle<> waiting) { state->waiting.emplace(waiting); }
            T await_resume() { return state->outcome.take(); }
        };
        return Awaiter{m_state};
    }

  private:
    struct State {
        Outcome<T> outcome;
        std::optional<Resumption> waiting;
    };
    std::shared_ptr<State> m_state = std::make_shared<State>();
};

namespace detail {

struct TaskPromiseBase {
    struct HandOver {
        bool await_ready() const noexcept { return false; }
        template <typename Promise>
        std::coroutine_handle<> await_suspend(std::coroutine_handle<Promise> finished) const noexcept {
            return finished.promise().caller;
        }
        void await_resume() const noexcept {}
    };
    std::suspend_always initial_suspend() const noexcept { return {}; }
    HandOver final_suspend() const noexcept { return {}; }

    std::coroutine_handle<> caller = std::noop_coroutine();
};

template <typename T>
struct TaskPromise : TaskPromiseBase {
    Task<T> get_return_object();
    void return_value(T value) { outcome.succeed(std::move(value)); }
    void unhandled_exception() { outcome.fail(std::current_exception()); }
    Outcome<T> outcome;
};

template <>
struct TaskPromise<void> : TaskPromiseBase {
    Task<void> get_return_object();
    void return_void() { outcome.succeed(); }
    void unhandled_exception() { outcome.fail(std::current_exception()); }
    Outcome<void> outcome;
};

} // namespace detail

template <typename T>
class [[nodiscard]] Task {
  public:
    using promise_type = detail::TaskPromise<T>;
    using Handle = std::coroutine_handle<promise_type>;

    Task() = default;
    explicit Task(Handle handle) : m_handle(handle) {}
    Task(Task&& other) noexcept : m_handle(std::exchange(other.m_handle, nullptr)) {}
    Task& operator=(Task&& other) noexcept {
        if (this != &other) {
            const Task old = std::move(*this);
            m_handle = std::exchange(other.m_handle, nullptr);
        }
        return *this;
    }
    ~Task() {
        if (m_handle)
            m_handle.destroy();
    }

    auto operator co_await() const& noexcept {
        struct Awaiter {
            Handle awaited;
            bool await_ready() const noexcept { return false; }
            std::coroutine_handle<> await_suspend(std::coroutine_handle<> caller) noexcept {
                awaited.promise().caller = caller;
                return awaited;
            }
            T await_resume() { return awaited.promise().outcome.take(); }
        };
        return Awaiter{m_handle};
    }

  private:
    friend TaskScope::Run;
    Handle m_handle;
};

template <typename T>
Task<T> detail::TaskPromise<T>::get_return_object() {
    return Task<T>(std::coroutine_handle<TaskPromise>::from_promise(*this));
}

inline Task<void> detail::TaskPromise<void>::get_return_object() {
    return Task<void>(std::coroutine_handle<TaskPromise>::from_promise(*this));
}

} // namespace quillorn
