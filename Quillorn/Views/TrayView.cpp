#include "Views/TrayView.h"

#include "Platform/Text.h"
#include "Views/MenuCommands.h"

#include <algorithm>
#include <iterator>

namespace quillorn {

namespace {

std::string titleOf(std::string_view command) {
    return std::string(std::ranges::find(menuCommands, command, &MenuCommand::name)->title);
}

/// A title as it fits into a menu.
std::string shortened(const std::string& title) {
    const std::string_view start = characterPrefix(title, TrayView::longestTitle);
    return start.size() < title.size() ? std::string(start) + "…" : title;
}

} // namespace

TrayView::TrayView(const TimerToolbarView::Environment& environment, Actions actions)
    : m_timer(environment),
      m_actions(std::move(actions)),
      m_task(shortened(m_timer.title())),
      m_time(m_timer.minutes()),
      m_changes(m_timer.observe([this] { update(); })) {}

void TrayView::update() {
    std::string task = shortened(m_timer.title());
    std::string time = m_timer.minutes();
    if (task == m_task && time == m_time)
        return;
    m_task = std::move(task);
    m_time = std::move(time);
    m_observers.tell();
}

std::vector<TrayView::Item> TrayView::menu() {
    std::vector<Item> items;
    if (m_timer.isRunning()) {
        items.push_back({.text = m_task + " — " + m_timer.started()});
        items.push_back({.text = std::string(TimerToolbarView::stopLabel), .action = [this] { m_timer.stop(); }});
    }
    Item start{.text = std::string(startTitle)};
    for (const TimerToolbarView::Choice& choice : m_timer.choices("")) {
        if (start.items.size() == mostTasks)
            break;
        if (choice.isActive)
            continue;
        const std::string text = shortened(choice.title);
        start.items.push_back({.text = choice.subtitle.empty() ? text : text + " — " + shortened(choice.subtitle),
                               .action = [this, task = choice.id] { m_timer.start(task); }});
    }
    if (!start.items.empty())
        items.push_back(std::move(start));
    if (!items.empty())
        items.emplace_back();
    items.push_back({.text = titleOf(commands::quickAdd), .action = m_actions.quickAdd});
    items.push_back({.text = std::string(showTitle), .action = m_actions.show});
    items.emplace_back();
    items.push_back({.text = titleOf("quit"), .action = m_actions.quit});
    return items;
}

} // namespace quillorn
