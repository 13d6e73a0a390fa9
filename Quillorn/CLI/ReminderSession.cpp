#include "CLI/ReminderSession.h"

#include "CLI/Output.h"

#include <algorithm>
#include <cstdio>
#include <fmt/core.h>
#include <fmt/ranges.h>
#include <stdexcept>

namespace quillorn {

bool ImportSession::hasFailed() {
    if (m_session.hasFailed())
        return true;
    if (m_session.app().runMode() == RunMode::normal)
        return false;
    printError("reminders are the user's own, and not imported in demo mode");
    return true;
}

std::vector<std::string> ImportSession::listNames() {
    if (!run(service().ensureAccess()))
        throw std::runtime_error("the folder of the reminder lists can't be read; the setting reminderFolderPath "
                                 "names it");
    return run(service().listNames());
}

void ImportSession::requireLists(const std::vector<std::string>& names) {
    const std::vector<std::string> known = listNames();
    for (const std::string& name : names)
        if (std::find(known.begin(), known.end(), name) == known.end())
            throw std::runtime_error(
                fmt::format("there is no list \"{}\"; there are: {}", name, fmt::join(known, ", ")));
}

Observation ImportSession::tellProgress() {
    return service().observe([this] {
        const auto& phase = service().phase();
        if (phase && std::exchange(m_told, *phase) != *phase)
            fmt::print(stderr, "{}\n", m_told);
    });
}

} // namespace quillorn
