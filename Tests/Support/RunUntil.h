#pragma once

#include "Platform/RunLoop.h"

#include <functional>
#include <gtest/gtest.h>

namespace quillorn {

/// Runs the loop until it holds; a fault where that takes ten seconds.
inline void runUntil(RunLoop& loop, const std::function<bool()>& holds) {
    using namespace std::chrono_literals;
    const auto limit = loop.after(10s, [&] { loop.stop(); });
    const auto poll = loop.every(1ms, [&] {
        if (holds())
            loop.stop();
    });
    loop.run();
    loop.cancel(poll);
    loop.cancel(limit);
    ASSERT_TRUE(holds()) << "waited in vain";
}

} // namespace quillorn
