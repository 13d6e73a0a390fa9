#pragma once

#include "CLI/Session.h"
#include "Platform/RunTask.h"
#include "Reminders/ReminderImportService.h"
#include "Reminders/ReminderIntents.h"

#include <string>
#include <utility>
#include <vector>

namespace quillorn {

/// The import of the user's reminders, with a queue to run its tasks on.
class ImportSession {
  public:
    explicit ImportSession(const ProcessInfo& process) : m_session(process) {}

    /// Whether there is nothing to import into; says so on standard error.
    bool hasFailed();
    template <typename T>
    T run(Task<T> task) {
        return runTask(m_session.mainQueue(), std::move(task));
    }

    Session& session() { return m_session; }
    ReminderImportService& service() { return m_session.app().reminderImport(); }
    ReminderIntents& intents() { return m_session.app().reminderIntents(); }

    /// Of all lists. Throws std::runtime_error where they can't be read.
    std::vector<std::string> listNames();
    /// Throws std::runtime_error for a list that is not there.
    void requireLists(const std::vector<std::string>& names);
    /// Writes progress words to standard error.
    [[nodiscard]] Observation tellProgress();

  private:
    Session m_session;
    std::string m_told;
};

} // namespace quillorn
