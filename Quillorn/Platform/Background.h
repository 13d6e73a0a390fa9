#pragma once

#include "Platform/MainQueue.h"
#include "Platform/Task.h"

#include <chrono>
#include <functional>
#include <memory>
#include <stop_token>
#include <type_traits>
#include <utility>

namespace quillorn {

/// Where tasks of the main thread send what takes time. Each piece of work gets a thread of its own.
///
/// What work refers to must outlive this object, not the task that waits for it: a task may be given up while its work
/// still runs, and only the end of this object waits for work.
class Background {
  public:
    enum class Priority {
        normal,
        /// Lets the rest of the system go before, for work that nobody waits for.
        low,
    };

    explicit Background(MainQueue& queue);
    /// Asks all work to stop, and waits until it has.
    ~Background();
    Background(const Background&) = delete;
    Background& operator=(const Background&) = delete;

    /// Runs `work`, a function of a std::stop_token, elsewhere, and gives what it returns or throws on the main
    /// thread. It is asked to stop when the task is given up.
    template <typename Work>
    Task<std::invoke_result_t<Work&, std::stop_token>> run(Work work, Priority priority = Priority::normal) {
        using Result = std::invoke_result_t<Work&, std::stop_token>;
        const StopAtEnd stop;
        const Completion<Result> completion;
        // Shared, since the functions of queues are copied.
        auto piece = std::make_shared<Piece<Work, Result>>(std::move(work), completion);
        spawn(priority, stop.source, [this, piece = std::move(piece), token = stop.source.get_token()] {
            piece->perform(token);
            m_queue.post([piece] { piece->completion.finish(std::move(piece->outcome)); });
        });
        co_return co_await completion;
    }

  private:
    struct StopAtEnd {
        StopAtEnd() = default;
        StopAtEnd(const StopAtEnd&) = delete;
        StopAtEnd& operator=(const StopAtEnd&) = delete;
        ~StopAtEnd() { source.request_stop(); }
        mutable std::stop_source source{};
    };

    template <typename Work, typename Result>
    struct Piece {
        Piece(Work function, Completion<Result> end) : work(std::move(function)), completion(std::move(end)) {}

        void perform(const std::stop_token& token) {
            try {
                if constexpr (std::is_void_v<Result>) {
                    work(token);
                    outcome.succeed();
                } else {
                    outcome.succeed(work(token));
                }
            } catch (...) {
                outcome.fail(std::current_exception());
            }
        }

        Work work;
        Completion<Result> completion;
        Outcome<Result> outcome;
    };

    void spawn(Priority priority, const std::stop_source& stop, const std::function<void()>& work);

    struct Threads;
    MainQueue& m_queue;
    std::unique_ptr<Threads> m_threads;
};

/// A pause of a task; its end is a timer's.
class Pause {
  public:
    Pause(MainQueue& queue, std::chrono::milliseconds duration) : m_queue(queue), m_duration(duration) {}
    ~Pause() {
        if (m_timer)
            m_queue.cancel(*m_timer);
    }
    Pause(const Pause&) = delete;
    Pause& operator=(const Pause&) = delete;

    bool await_ready() const noexcept { return false; }
    void await_suspend(std::coroutine_handle<> waiting) {
        m_timer = m_queue.after(m_duration, [resume = Resumption(waiting)] { resume(); });
    }
    void await_resume() const noexcept {}

  private:
    MainQueue& m_queue;
    std::chrono::milliseconds m_duration;
    std::optional<MainQueue::TimerId> m_timer;
};

} // namespace quillorn
