#include "Platform/Clock.h"

namespace quillorn {

Date SystemClock::now() const {
    return std::chrono::floor<Date::duration>(std::chrono::system_clock::now());
}

} // namespace quillorn
