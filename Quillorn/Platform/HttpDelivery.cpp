#include "Platform/HttpDelivery.h"

#include <utility>

namespace quillorn {

void HttpDelivery::armTimer() {
    if (m_timer)
        m_queue.cancel(*m_timer);
    m_timer = m_queue.after(m_timeout, [delivery = weak_from_this()] {
        if (const auto self = delivery.lock())
            self->timeOut();
    });
}

void HttpDelivery::end() {
    if (std::exchange(m_isOver, true))
        return;
    if (m_timer)
        m_queue.cancel(*m_timer);
    if (!m_isTelling)
        m_handlers = {}; // what they hold belongs to this thread
}

void HttpDelivery::timeOut() {
    {
        const std::lock_guard lock(m_mutex);
        if (!m_inbox.isPosted) {
            m_inbox.isEnded = true;
            m_inbox.failure = HttpFailure("The request timed out.");
        } // else the server has spoken, and we have not come to it yet
    }
    drain();
}

void HttpDelivery::drain() {
    if (m_isOver)
        return;
    Inbox news;
    {
        const std::lock_guard lock(m_mutex);
        news = std::exchange(m_inbox, {});
    }
    armTimer();
    m_isTelling = true;
    try {
        tell(news);
    } catch (...) {
        m_isTelling = false;
        cancel();
        m_handlers = {};
        throw; // to the queue, which reports it
    }
    m_isTelling = false;
    if (m_isOver)
        m_handlers = {};
}

void HttpDelivery::tell(Inbox& news) {
    if (news.status && m_handlers.onStatus)
        m_handlers.onStatus(*news.status);
    if (m_byLines)
        tellLines(std::exchange(news.body, {}));
    if (news.isEnded && !news.failure && !m_line.empty() && !m_isOver)
        m_handlers.onLine(m_line);
    if (!news.isEnded || m_isOver)
        return;
    cancel();
    m_handlers.onEnd(news.failure, std::move(news.body));
}

void HttpDelivery::tellLines(std::string_view bytes) {
    for (std::size_t end = bytes.find('\n'); end != std::string_view::npos && !m_isOver; end = bytes.find('\n')) {
        m_line += bytes.substr(0, end);
        if (m_line.ends_with('\r'))
            m_line.pop_back();
        m_handlers.onLine(m_line);
        m_line.clear();
        bytes.remove_prefix(end + 1);
    }
    m_line += bytes;
}

} // namespace quillorn
