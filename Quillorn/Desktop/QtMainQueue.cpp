#include "Desktop/QtMainQueue.h"

#include <QCoreApplication>
#include <QEvent>
#include <algorithm>
#include <limits>

namespace quillorn {

namespace {

// Half a frame: what takes longer lets the window draw in between.
constexpr std::chrono::milliseconds slice{8};
constexpr QEvent::Type wakeEvent = QEvent::User;

} // namespace

QtMainQueue::QtMainQueue(SystemLog& log)
    : m_loop(log, [this] {
          if (!m_isWoken.exchange(true))
              QCoreApplication::postEvent(this, new QEvent(wakeEvent));
      }) {
    m_next.setSingleShot(true);
    m_next.setTimerType(Qt::PreciseTimer);
    connect(&m_next, &QTimer::timeout, this, [this] { work(); });
}

bool QtMainQueue::event(QEvent* event) {
    if (event->type() != wakeEvent)
        return QObject::event(event);
    work();
    return true;
}

void QtMainQueue::work() {
    m_isWoken = false;
    const std::optional<std::chrono::milliseconds> wait = m_loop.runFor(slice);
    if (!wait)
        return m_next.stop();
    constexpr std::chrono::milliseconds longest{std::numeric_limits<int>::max()};
    m_next.start(std::min(*wait, longest));
}

} // namespace quillorn
