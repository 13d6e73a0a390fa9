#include "App/NotificationTurn.h"

#include "App/QuillornApp.h"
#include "Platform/SystemLog.h"

#include <fmt/core.h>
#include <system_error>

namespace quillorn {

bool NotificationTurn::take() {
    try {
        if (!m_lock)
            m_lock = FileLock::tryLock(storeFile(m_paths).string() + "-notifying");
        return m_lock.has_value();
    } catch (const std::system_error& error) {
        // Better shown twice than not at all.
        m_log.log(fmt::format("Another process may show the same notifications: {}", error.what()));
        return true;
    }
}

} // namespace quillorn
