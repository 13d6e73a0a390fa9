#include "Support/FakeClock.h"

namespace quillorn {

FakeClock::FakeClock() : m_now(parseISO8601("2026-01-15T12:00:00Z").value()) {}

} // namespace quillorn
