#pragma once

#include "Platform/Task.h"

#include <deque>
#include <exception>
#include <memory>
#include <optional>
#include <utility>

namespace quillorn {

/// Values that come one after the other on the main thread, for one task that takes them in its own time. Copies are
/// the same sequence. What comes is kept until it is taken.
template <typename T>
class Sequence {
  public:
    void push(T value) const {
        if (m_state->isEnded)
            return;
        m_state->values.push_back(std::move(value));
        goOn();
    }
    /// Nothing more comes; with an error the last thing taken is that.
    void finish(std::exception_ptr error = nullptr) const {
        if (std::exchange(m_state->isEnded, true))
            return;
        m_state->error = std::move(error);
        goOn();
    }

    /// `co_await sequence.next()` gives the next value, or nothing at the end, or throws.
    auto next() const {
        struct Awaiter {
            std::shared_ptr<State> state;
            bool await_ready() const noexcept { return !state->values.empty() || state->isEnded; }
            void await_suspend(std::coroutine_handle<> waiting) { state->waiting.emplace(waiting); }
            std::optional<T> await_resume() { return state->take(); }
        };
        return Awaiter{m_state};
    }

  private:
    struct State {
        std::optional<T> take() {
            if (!values.empty()) {
                std::optional<T> value(std::move(values.front()));
                values.pop_front();
                return value;
            }
            if (error)
                std::rethrow_exception(std::exchange(error, nullptr));
            return std::nullopt;
        }

        std::deque<T> values;
        bool isEnded = false;
        std::exception_ptr error;
        std::optional<Resumption> waiting;
    };

    void goOn() const {
        if (const auto waiting = std::exchange(m_state->waiting, std::nullopt))
            (*waiting)();
    }

    std::shared_ptr<State> m_state = std::make_shared<State>();
};

} // namespace quillorn
