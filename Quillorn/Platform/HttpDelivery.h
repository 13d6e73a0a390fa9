#pragma once

#include "Platform/HttpClient.h"
#include "Platform/MainQueue.h"

#include <mutex>

namespace quillorn {

/// Brings what comes of a call from the thread of the transfers to the main thread, and tells it there. The time that
/// the server may keep silent counts there, too.
class HttpDelivery : public std::enable_shared_from_this<HttpDelivery> {
  public:
    HttpDelivery(MainQueue& queue, HttpCallHandlers handlers, std::chrono::milliseconds timeout)
        : m_byLines(handlers.onLine != nullptr),
          m_queue(queue),
          m_timeout(timeout),
          m_handlers(std::move(handlers)) {}
    virtual ~HttpDelivery() = default;
    HttpDelivery(const HttpDelivery&) = delete;
    HttpDelivery& operator=(const HttpDelivery&) = delete;

    // On the main thread.
    void armTimer();
    /// Nothing is told from here on.
    void end();
    /// The same, and the server is left.
    virtual void cancel() = 0;
    bool isOver() const { return m_isOver; }

  protected:
    struct Inbox {
        std::optional<int> status;
        std::string body; // of what comes by lines, what has come
        bool isEnded = false;
        std::optional<HttpFailure> failure;
        bool isPosted = false;
    };

    // On the thread of the transfers.
    template <typename Change>
    void handOver(const Change& change) {
        {
            const std::lock_guard lock(m_mutex);
            change(m_inbox);
            if (std::exchange(m_inbox.isPosted, true))
                return;
        }
        m_queue.post([self = shared_from_this()] { self->drain(); });
    }

    const bool m_byLines;

  private:
    void drain();
    void tell(Inbox& news);
    void tellLines(std::string_view bytes);
    void timeOut();

    // The main thread's.
    MainQueue& m_queue;
    const std::chrono::milliseconds m_timeout;
    HttpCallHandlers m_handlers;
    std::optional<MainQueue::TimerId> m_timer;
    bool m_isOver = false;
    bool m_isTelling = false;
    std::string m_line; // that has no end yet

    std::mutex m_mutex; // guards m_inbox
    Inbox m_inbox;
};

} // namespace quillorn
