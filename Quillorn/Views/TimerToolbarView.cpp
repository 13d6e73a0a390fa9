#include "Views/TimerToolbarView.h"

#include "Models/Formatters.h"
#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/WhenPhrase.h"
#include "Platform/Calendar.h"
#include "Platform/Clock.h"
#include "Platform/Text.h"
#include "Services/TimerService.h"
#include "Store/MainContext.h"
#include "Views/ActivityItem.h"
#include "Views/TaskChoices.h"

#include <fmt/core.h>

namespace quillorn {

Observation TimerToolbarView::observe(std::function<void()> handler) {
    auto following = m_following.lock();
    if (!following) {
        const auto tell = [this] { m_observers.tell(); };
        following = std::make_shared<Following>(
            Following{m_environment.timer.observe(tell), m_environment.main.observe([this](const ChangeSet&) {
                          if (isRunning()) // names and colours
                              m_observers.tell();
                      })});
        m_following = following;
    }
    using Ends = std::pair<std::shared_ptr<Following>, Observation>;
    return Observation(std::make_shared<Ends>(std::move(following), m_observers.add(std::move(handler))));
}

bool TimerToolbarView::isRunning() const {
    return m_environment.timer.isRunning();
}

ProjectTask* TimerToolbarView::activeTask() const {
    return m_environment.timer.activeTask(m_environment.main.context());
}

std::string TimerToolbarView::title() const {
    if (!isRunning())
        return {};
    const auto* task = activeTask();
    return task != nullptr ? task->title() : std::string(noTask);
}

std::string TimerToolbarView::color() const {
    const auto* task = activeTask();
    return task != nullptr && task->project() != nullptr ? task->project()->color() : std::string();
}

std::string TimerToolbarView::clock() const {
    return isRunning() ? clockForm(m_environment.timer.elapsedTime()) : std::string();
}

std::string TimerToolbarView::minutes() const {
    return isRunning() ? hoursAndMinutes(m_environment.timer.elapsedTime()) : std::string();
}

std::string TimerToolbarView::started() const {
    const auto start = m_environment.timer.startTime();
    return start ? "Started " + smartDate(*start, m_environment.clock.now(), m_environment.calendar) : std::string();
}

std::optional<UUID> TimerToolbarView::task() const {
    const auto* task = activeTask();
    return task != nullptr ? std::optional(task->id()) : std::nullopt;
}

std::vector<TimerToolbarView::Choice> TimerToolbarView::choices(std::string_view search) const {
    std::vector<Choice> choices;
    for (const auto* each : openTasks(m_environment.main.context(), m_environment.text, search, mostChoices))
        choices.push_back({each->id(), each->title(), projectPath(each->project()).value_or(""),
                           m_environment.timer.isActive(*each)});
    return choices;
}

void TimerToolbarView::start(const UUID& task) {
    auto* found = m_environment.main.context().find<ProjectTask>(task);
    if (found == nullptr)
        return;
    m_environment.timer.start(*found, m_environment.main.context());
    m_environment.main.save();
}

void TimerToolbarView::stop() {
    m_environment.timer.stop(m_environment.main.context());
}

void TimerToolbarView::toggle(const std::optional<UUID>& selected) {
    if (isRunning())
        stop();
    else if (selected)
        start(*selected);
}

std::string TimerToolbarView::earlierLabel(int minutes) {
    return fmt::format("Started {} minutes earlier", minutes);
}

void TimerToolbarView::startEarlier(int minutes) {
    if (const auto start = m_environment.timer.startTime())
        m_environment.timer.adjustStart(*start - std::chrono::minutes(minutes), m_environment.main.context());
}

std::optional<std::string> TimerToolbarView::adjust(std::string_view when) {
    if (!isRunning())
        return std::string(notRunning);
    const Date now = m_environment.clock.now();
    const auto moment = readWhen(trimBlanks(when), now, m_environment.calendar);
    if (!moment)
        return fmt::format("“{}” is no time", characterPrefix(when, 60));
    const Date start = moment->date(now, m_environment.calendar);
    if (start > now)
        return std::string(notYet);
    m_environment.timer.adjustStart(start, m_environment.main.context());
    return std::nullopt;
}

} // namespace quillorn
