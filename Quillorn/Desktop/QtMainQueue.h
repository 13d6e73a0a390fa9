#pragma once

#include "Platform/RunLoop.h"

#include <QObject>
#include <QTimer>

namespace quillorn {

/// The main queue inside the toolkit's event loop. Made on the thread that runs that.
class QtMainQueue final : public QObject, public MainQueue {
  public:
    explicit QtMainQueue(SystemLog& log);

    void post(Work work) override { m_loop.post(std::move(work)); }
    TimerId after(std::chrono::milliseconds delay, Work work) override { return m_loop.after(delay, std::move(work)); }
    TimerId every(std::chrono::milliseconds period, Work work) override {
        return m_loop.every(period, std::move(work));
    }
    void cancel(TimerId timer) override { m_loop.cancel(timer); }

  protected:
    bool event(QEvent* event) override;

  private:
    void work();

    QTimer m_next;
    /// Whether an event of ours is on its way.
    std::atomic<bool> m_isWoken = false;
    RunLoop m_loop;
};

} // namespace quillorn
