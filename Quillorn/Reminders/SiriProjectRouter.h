#pragma once

#include "Platform/Task.h"
#include "Platform/UUID.h"
#include "Reminders/SiriReminderRules.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace quillorn {

class MainQueue;
class OnDeviceModel;
class SystemLog;

/// Finds the project that a spoken reminder is about by a language model on this machine. Whatever goes wrong, the
/// reminder just isn't filed.
class SiriProjectRouter {
  public:
    using Candidate = SiriReminderRules::Candidate;

    /// Someone waits for the answer.
    static constexpr std::chrono::seconds patience{4};

    SiriProjectRouter(OnDeviceModel& model, MainQueue& queue, SystemLog& log)
        : m_model(model),
          m_queue(queue),
          m_log(log) {}

    /// The project's id; absent when none was chosen. Throws nothing.
    Task<std::optional<UUID>> route(std::string title, std::string note, std::vector<Candidate> candidates);

  private:
    OnDeviceModel& m_model;
    MainQueue& m_queue;
    SystemLog& m_log;
};

/// What the model is asked.
std::string siriRoutingPrompt(const std::string& title, const std::string& note,
                              const std::vector<SiriReminderRules::Candidate>& candidates);

} // namespace quillorn
