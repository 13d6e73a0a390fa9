#include "Reminders/SiriProjectRouter.h"

#include "Platform/MainQueue.h"
#include "Platform/OnDeviceModel.h"
#include "Platform/SystemLog.h"

#include <algorithm>
#include <fmt/core.h>

namespace quillorn {

namespace {

constexpr std::size_t usualContextSize = 4096;
constexpr std::string_view instruction =
    "You file a spoken reminder into one of a freelancer's client projects. Answer with the label of the project the "
    "reminder is clearly about. Answer None when it is personal (errands, family, health), when it is ambiguous, or "
    "when no project fits. Never guess.";

/// The prompt with as many candidates as its share of the model's context holds.
std::string fittingPrompt(const OnDeviceModel& model, const std::string& title, const std::string& note,
                          std::vector<SiriReminderRules::Candidate>& candidates) {
    const std::size_t budget = 6 * model.contextSize().value_or(usualContextSize) / 10;
    for (;;) {
        std::string prompt = siriRoutingPrompt(title, note, candidates);
        const std::optional<std::size_t> count = model.tokenCount(prompt);
        if (!count || *count <= budget || candidates.size() <= 1)
            return prompt;
        const std::size_t dropped = std::max<std::size_t>(candidates.size(), 4) / 4;
        candidates.resize(candidates.size() - dropped);
    }
}

OnDeviceModel::Choice filingAmong(const std::vector<SiriReminderRules::Candidate>& candidates) {
    OnDeviceModel::Choice choice{.name = "Filing",
                                 .property = "project",
                                 .description = "The chosen project label, or None",
                                 .valueName = "ProjectLabel",
                                 .values = {std::string(SiriReminderRules::noLabel)}};
    for (const auto& candidate : candidates)
        choice.values.push_back(candidate.label);
    return choice;
}

using Answer = Completion<std::optional<std::string>>;

Task<> ask(OnDeviceModel& model, std::string prompt, OnDeviceModel::Choice choice, Answer answer) {
    try {
        std::optional<std::string> chosen = co_await model.respond(std::move(prompt), std::move(choice));
        answer.succeed(std::move(chosen));
    } catch (...) {
        answer.fail(std::current_exception());
    }
}

/// A timer that ends with its owner.
class Deadline {
  public:
    Deadline(MainQueue& queue, std::chrono::milliseconds time, Answer answer)
        : m_queue(queue),
          m_timer(queue.after(time, [answer]() mutable { answer.succeed(std::nullopt); })) {}
    ~Deadline() { m_queue.cancel(m_timer); }
    Deadline(const Deadline&) = delete;
    Deadline& operator=(const Deadline&) = delete;

  private:
    MainQueue& m_queue;
    MainQueue::TimerId m_timer;
};

} // namespace

std::string siriRoutingPrompt(const std::string& title, const std::string& note,
                              const std::vector<SiriReminderRules::Candidate>& candidates) {
    std::string prompt = fmt::format("{}\n\nReminder: {}\n", instruction, title);
    if (!note.empty())
        prompt += fmt::format("Note: {}\n", note);
    prompt += "\nProjects:\n";
    for (const auto& candidate : candidates)
        prompt += fmt::format("- {}{}{}\n", candidate.label, candidate.detail.empty() ? "" : ": ", candidate.detail);
    return prompt;
}

Task<std::optional<UUID>> SiriProjectRouter::route(std::string title, std::string note,
                                                   std::vector<Candidate> candidates) {
    // A single project is no choice.
    if (candidates.size() < 2 || !m_model.isAvailable())
        co_return std::nullopt;
    try {
        std::string prompt = fittingPrompt(m_model, title, note, candidates);
        OnDeviceModel::Choice choice = filingAmong(candidates);
        const Answer answer;
        TaskScope race; // who has lost is given up with it
        const Deadline deadline(m_queue, patience, answer);
        race.start(ask(m_model, std::move(prompt), std::move(choice), answer));
        const std::optional<std::string> label = co_await answer;
        const auto found = std::find_if(candidates.begin(), candidates.end(),
                                        [&](const Candidate& each) { return label == each.label; });
        if (label && *label != SiriReminderRules::noLabel && found != candidates.end())
            co_return found->id;
    } catch (const std::exception& error) {
        m_log.log(fmt::format("SiriProjectRouter: not filed ({})", error.what()));
    }
    co_return std::nullopt;
}

} // namespace quillorn
