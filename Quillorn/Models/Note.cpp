#include "Models/Note.h"

#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Platform/Text.h"
#include "Store/EntityType.h"

#include <algorithm>
#include <fmt/core.h>
#include <fmt/format.h>
#include <vector>

namespace quillorn {

struct Note::Table {
    static constexpr std::array columns{
        column<&Note::m_title>("title"),
        column<&Note::m_content>("content"),
        column<&Note::m_createdAt>("createdAt"),
        column<&Note::m_updatedAt>("updatedAt"),
        column<&Note::m_isPinned>("isPinned"),
        toOne<&Note::m_project>("project", OnDelete::cascade),
        toOne<&Note::m_task>("task", OnDelete::cascade),
    };
    template <auto Member>
    static constexpr std::size_t at = placeOf<Member>(columns);
    static std::unique_ptr<Entity> make() { return std::unique_ptr<Entity>(new Note); }
};

namespace {

constexpr std::string_view untitled = "Untitled Note";
constexpr std::size_t previewLength = 250;
constexpr std::size_t headingLength = 120;
constexpr std::size_t summaryLength = 60;

std::string shortened(std::string text) {
    const std::string_view head = characterPrefix(text, previewLength);
    if (head.size() == text.size())
        return text;
    return std::string(head) + "...";
}

std::vector<std::string_view> nonEmptyLines(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
        if (end > 0)
            lines.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

} // namespace

const EntityType& Note::entityType() {
    static const EntityType type = makeEntityType("Note", Table::columns, {}, &Table::make);
    return type;
}

void Note::initialize(Arguments arguments, Date now) {
    m_title = std::move(arguments.title);
    m_content = std::move(arguments.content);
    m_createdAt = m_updatedAt = now;
    setProject(arguments.project);
    setTask(arguments.task);
}

void Note::setTitle(std::string title) {
    assign(Table::at<&Note::m_title>, m_title, std::move(title));
}
void Note::setContent(std::string content) {
    assign(Table::at<&Note::m_content>, m_content, std::move(content));
}
void Note::setUpdatedAt(Date date) {
    assign(Table::at<&Note::m_updatedAt>, m_updatedAt, date);
}
void Note::setPinned(bool pinned) {
    assign(Table::at<&Note::m_isPinned>, m_isPinned, pinned);
}

void Note::togglePin(Date now) {
    setPinned(!m_isPinned);
    setUpdatedAt(now);
}

Project* Note::project() const {
    return static_cast<Project*>(resolve(Table::at<&Note::m_project>, m_project));
}
void Note::setProject(Project* project) {
    assignReference(Table::at<&Note::m_project>, m_project, project);
}
ProjectTask* Note::task() const {
    return static_cast<ProjectTask*>(resolve(Table::at<&Note::m_task>, m_task));
}
void Note::setTask(ProjectTask* task) {
    assignReference(Table::at<&Note::m_task>, m_task, task);
}

std::string_view Note::givenTitle() const {
    const std::string_view title = trimBlanks(m_title);
    return title == untitled ? std::string_view() : title;
}

std::string Note::preview() const {
    std::string line;
    bool pendingBlank = false; // the first of a pair of blanks, which becomes one
    for (char byte : trimWhitespaceAndNewlines(m_content)) {
        if (byte == '\n')
            byte = ' ';
        const bool secondOfPair = byte == ' ' && pendingBlank;
        pendingBlank = byte == ' ' && !pendingBlank;
        if (!secondOfPair)
            line += byte;
    }
    return shortened(std::move(line));
}

std::string Note::displayTitle() const {
    if (const std::string_view title = givenTitle(); !title.empty())
        return std::string(title);
    const auto lines = nonEmptyLines(m_content);
    const std::string_view first = lines.empty() ? std::string_view() : trimBlanks(lines.front());
    if (!first.empty())
        return std::string(characterPrefix(first, headingLength));
    if (const ProjectTask* commented = task())
        return "Comment on " + commented->title();
    return std::string(untitled);
}

std::string Note::listPreview() const {
    if (!givenTitle().empty())
        return preview();
    const auto lines = nonEmptyLines(m_content);
    if (lines.size() < 2)
        return {};
    return shortened(std::string(trimBlanks(fmt::format("{}", fmt::join(lines.begin() + 1, lines.end(), " ")))));
}

std::string Note::activitySummary() const {
    if (const ProjectTask* commented = task())
        return "Commented on " + commented->title();
    if (const std::string_view title = givenTitle(); !title.empty())
        return fmt::format("Edited note: {}", title);
    const std::string text = preview();
    if (text.empty())
        return "Edited a note";
    return fmt::format("Edited note: {}", characterPrefix(text, summaryLength));
}

} // namespace quillorn
