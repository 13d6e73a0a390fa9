#include "CLI/Output.h"
#include "CLI/ReminderCommands.h"
#include "CLI/ReminderSession.h"
#include "Models/Formatters.h"
#include "Platform/FileContent.h"
#include "Platform/Terminal.h"
#include "Platform/Text.h"
#include "Reminders/ReminderRowJson.h"

#include <cstdio>
#include <fmt/core.h>
#include <iostream>
#include <iterator>
#include <stdexcept>

namespace quillorn {

namespace {

/// Of standard input; far more than any review.
constexpr std::size_t maximumInput = std::size_t{64} << 20;

std::string inputOf(const std::string& file) {
    if (file != "-")
        return readWhole(openFile(file));
    std::string text;
    for (char byte = 0; text.size() <= maximumInput && std::cin.get(byte);)
        text += byte;
    if (text.size() > maximumInput)
        throw std::runtime_error("standard input is too long");
    return text;
}

ExitStatus report(const ApplyResult& result, bool completes, bool json) {
    if (json) {
        printJson(Json::Object{{"created", static_cast<std::int64_t>(result.created)},
                               {"completed", static_cast<std::int64_t>(result.completed)},
                               {"failures", Json::Array(result.failures.begin(), result.failures.end())},
                               {"importedIDs", Json::Array(result.importedIDs.begin(), result.importedIDs.end())}});
    } else {
        fmt::print("{}\n", importedLine(result, completes));
        for (const std::string& failure : result.failures)
            printError(failure);
    }
    return result.failures.empty() ? ExitStatus::success : ExitStatus::failure;
}

/// Asks a person about each row.
class Dialogue {
  public:
    explicit Dialogue(ImportSession& session) {
        const auto lists = session.run(session.intents().suggestedLists());
        m_projects.assign(std::next(lists.begin()), lists.end()); // the first is no project
    }

    /// False when the person wants no import at all.
    bool ask(std::vector<ReminderImportRow>& rows) {
        for (std::size_t i = 0; i < rows.size(); ++i) {
            show(rows[i], i + 1, rows.size());
            if (!askAbout(rows[i]))
                return false;
        }
        return true;
    }

  private:
    bool askAbout(ReminderImportRow& row) {
        for (;;) {
            const char* usual = row.include ? "[Y]es, [n]o" : "[y]es, [N]o";
            const std::string answer = read(fmt::format("   Import? {}, [t]itle, [p]roject, [q]uit: ", usual));
            if (answer == "q" || std::cin.eof())
                return false;
            if (answer == "t")
                row.title = read("   Title: ");
            else if (answer == "p")
                chooseProject(row);
            else if (answer == "y" && !row.projectID)
                fmt::print("   Choose a project first\n");
            else if (answer.empty() || answer == "y" || answer == "n") {
                row.include = answer.empty() ? row.include : answer == "y";
                return true;
            }
        }
    }

    void chooseProject(ReminderImportRow& row) {
        for (std::size_t i = 0; i < m_projects.size(); ++i)
            fmt::print("   {:3}  {}\n", i + 1, shown(nameOf(m_projects[i])));
        const std::string answer = read("   Number: ");
        for (std::size_t i = 0; i < m_projects.size(); ++i)
            if (answer == std::to_string(i + 1))
                row.projectID = m_projects[i].id;
    }

    void show(const ReminderImportRow& row, std::size_t number, std::size_t count) const {
        fmt::print("{}/{}  {}  ({})\n", number, count, shown(row.reminder.title), shown(row.reminder.listName));
        std::string project = "No project";
        for (const QuillornReminderList& each : m_projects)
            if (row.projectID == each.id)
                project = nameOf(each);
        std::string about = fmt::format("{}: {}", project, row.title);
        if (row.confidence)
            about += fmt::format(" · {:.2f}", *row.confidence);
        if (!row.reason.empty())
            about += " · " + row.reason;
        fmt::print("   {}\n", shown(about));
        if (row.skipReason)
            fmt::print("   {}\n", shown(*row.skipReason));
    }

    static std::string nameOf(const QuillornReminderList& list) {
        return list.clientName ? *list.clientName + " / " + list.name : list.name;
    }

    static std::string read(const std::string& question) {
        fmt::print("{}", question);
        std::fflush(stdout);
        std::string line;
        std::getline(std::cin, line);
        return std::string(trimWhitespaceAndNewlines(line));
    }

    ReminderIntents::Lists m_projects;
};

} // namespace

ExitStatus reviewReminders(const std::vector<std::string>& lists, bool json, const ProcessInfo& process) {
    if (!json && !isTerminal(stdin))
        throw std::runtime_error("a review asks at a terminal; --json prints what there is to review");
    ImportSession session(process);
    if (session.hasFailed())
        return ExitStatus::failure;
    ReminderImportService& service = session.service();
    std::vector<std::string> wanted = lists.empty() ? service.chosenLists() : lists;
    if (wanted.empty())
        throw std::runtime_error("no lists are chosen; name some, or choose them by \"quillorn reminders choose\"");
    session.requireLists(wanted);
    const Observation progress = session.tellProgress();
    ReminderScan scan = session.run(service.scan(std::move(wanted)));
    if (json) {
        printJson(jsonOf(ReminderRows{scan.lists, scan.rows}));
        return ExitStatus::success;
    }
    if (scan.rows.empty()) {
        fmt::print("No open reminders to import.\n");
        return ExitStatus::success;
    }
    std::vector<ReminderImportRow> rows = scan.rows;
    if (!Dialogue(session).ask(rows)) {
        fmt::print("Nothing was imported\n");
        return ExitStatus::success;
    }
    const bool completes = service.completesReminders();
    return report(session.run(service.import(std::move(rows), completes, std::move(scan))), completes, false);
}

ExitStatus importReminderRows(const std::string& file, bool json, const ProcessInfo& process) {
    ReminderRows wanted = readReminderRows(Json::parse(inputOf(file)));
    ImportSession session(process);
    if (session.hasFailed())
        return ExitStatus::failure;
    ReminderImportService& service = session.service();
    session.requireLists(wanted.lists);
    const std::vector<ReminderItem> open = session.run(service.openReminders(wanted.lists));
    bindRows(wanted.rows, open);
    ReminderScan scan;
    scan.lists = wanted.lists;
    for (const ReminderItem& item : open)
        scan.openIDs.insert(item.id);
    const bool completes = service.completesReminders();
    return report(session.run(service.import(std::move(wanted.rows), completes, std::move(scan))), completes, json);
}

} // namespace quillorn
