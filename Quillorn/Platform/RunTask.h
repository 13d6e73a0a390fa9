#pragma once

#include "Platform/RunLoop.h"
#include "Platform/Task.h"

#include <chrono>
#include <exception>
#include <optional>
#include <type_traits>
#include <utility>

namespace quillorn {

namespace detail {

template <typename T>
Task<> finishTask(RunLoop& loop, Task<T> task, Outcome<T>& outcome) {
    try {
        if constexpr (std::is_void_v<T>) {
            co_await std::move(task);
            outcome.succeed();
        } else {
            outcome.succeed(co_await std::move(task));
        }
    } catch (...) {
        outcome.fail(std::current_exception());
    }
    loop.stop();
}

} // namespace detail

/// Runs the loop until the task has come to its end, and gives what it gives or throws: for programs that do one thing.
template <typename T>
T runTask(RunLoop& loop, Task<T> task) {
    Outcome<T> outcome;
    TaskScope scope;
    scope.start(detail::finishTask(loop, std::move(task), outcome));
    while (!outcome.isThere()) // who has stopped the loop may have meant something else
        loop.run();
    return outcome.take();
}

/// The same; absent when that takes longer, and the task is given up.
template <typename T>
std::optional<T> runTaskFor(RunLoop& loop, std::chrono::milliseconds patience, Task<T> task) {
    Outcome<T> outcome;
    TaskScope scope;
    bool isLate = false;
    const auto timer = loop.after(patience, [&] {
        isLate = true;
        loop.stop();
    });
    scope.start(detail::finishTask(loop, std::move(task), outcome));
    while (!outcome.isThere() && !isLate)
        loop.run();
    loop.cancel(timer);
    return outcome.isThere() ? std::optional<T>(outcome.take()) : std::nullopt;
}

} // namespace quillorn
