#include "Store/MainContext.h"

#include "Platform/SystemLog.h"
#include "Store/StoreError.h"

#include <any>
#include <fmt/core.h>
#include <utility>

namespace quillorn {

MainContext::MainContext(ModelContainer& container, MainQueue& queue, SystemLog& log)
    : m_context(container),
      m_queue(queue),
      m_log(log),
      m_fileVersion(container.fileVersion()) {
    m_saves = container.notifications().observe(
        storeDidSave,
        [this](const Notification& notification) {
            const auto changes = std::any_cast<std::shared_ptr<const ChangeSet>>(notification.userInfo.at("changes"));
            follow(changes.get());
        },
        &queue);
    m_timer = queue.every(period, [this] { tick(); });
    m_releaseTimer = queue.every(restingTime, [&container] { container.releaseUnusedMemory(); });
}

MainContext::~MainContext() {
    m_queue.cancel(m_timer);
    m_queue.cancel(m_releaseTimer);
}

void MainContext::tick() {
    try {
        // First what others wrote: then an object that is gone is not saved.
        if (hasFileChanged())
            follow(nullptr);
        if (m_context.hasChanges())
            m_context.save();
        // A snapshot that is held for long would keep the log from starting over.
        m_context.endReading();
        m_lastFailure.clear();
    } catch (const StoreError& error) {
        report(error);
    }
}

void MainContext::report(const StoreError& error) {
    // The next tick tries again; a full disk is not worth a line twice a second.
    if (std::exchange(m_lastFailure, error.what()) != error.what())
        m_log.log(fmt::format("The store could not be read or saved: {}", error.what()));
}

bool MainContext::hasFileChanged() {
    const auto version = m_context.container().fileVersion();
    return std::exchange(m_fileVersion, version) != version;
}

void MainContext::follow(const ChangeSet* changes) {
    try {
        m_context.refresh();
        for (const Listener& listener : m_listeners)
            listener(changes);
        m_context.endReading();
    } catch (const StoreError& error) {
        report(error);
    }
}

} // namespace quillorn
