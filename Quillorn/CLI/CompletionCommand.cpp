#include "CLI/CompletionCommand.h"

#include "CLI/Definitions.h"
#include "CLI/StoreWork.h"
#include "Platform/Terminal.h"
#include "Platform/Text.h"

#include <CLI/CLI.hpp>
#include <array>

namespace quillorn {

namespace {

struct Kind {
    std::string_view name;
    /// Gives id and name, the likeliest first.
    const char* select;
    bool isNamedById;
};

constexpr std::array<Kind, 6> kinds = {{
    {"tasks", "SELECT id, title FROM ProjectTask ORDER BY completedAt IS NOT NULL, updatedAt DESC", true},
    {"notes", "SELECT id, title FROM Note WHERE task IS NULL AND title <> '' ORDER BY updatedAt DESC", true},
    {"projects", "SELECT id, name FROM Project ORDER BY isArchived, name COLLATE NOCASE", false},
    {"clients", "SELECT id, name FROM Client ORDER BY isArchived, name COLLATE NOCASE", false},
    {"tags", "SELECT id, name FROM Tag ORDER BY name COLLATE NOCASE", false},
    {"groups", "SELECT id, title FROM ProjectDivider ORDER BY title COLLATE NOCASE", false},
}};

constexpr std::size_t mostOffers = 100;

bool beginsLike(const Text& text, std::string_view name, std::string_view typed) {
    const std::string_view beginning = characterPrefix(name, characterCount(typed));
    return text.compareIgnoringCase(beginning, typed) == 0;
}

/// Names are offered as they are, so none that a line can't hold.
bool isPlain(std::string_view name) {
    return !name.empty() && escapeControls(name) == name;
}

ExitStatus printOffers(const Kind& kind, std::string typed, const ProcessInfo& process) {
    return withStore(process, ModelContext::Intent::read, [&](StoreWork& work) {
        std::string digits = typed;
        std::ranges::transform(digits, digits.begin(),
                               [](char c) { return c >= 'a' && c <= 'f' ? static_cast<char>(c - 'a' + 'A') : c; });
        const Text::Needle part = work.text().needle(typed);
        const StatementLoan rows = work.context.statement(kind.select);
        for (std::size_t count = 0; count < mostOffers && rows->step();) {
            const std::string id = rows->uuid(0).string();
            const std::string_view name = rows->text(1);
            if (kind.isNamedById ? !typed.empty() && !id.starts_with(digits) && !part.isIn(name)
                                 : !isPlain(name) || (!typed.empty() && !beginsLike(work.text(), name, typed)))
                continue;
            if (kind.isNamedById)
                fmt::print("{}\t{}\n", id, escapeControls(name));
            else
                fmt::print("{}\t{}\n", name, shortId(rows->uuid(0)));
            ++count;
        }
        return ExitStatus::success;
    });
}

} // namespace

void addCompletionCommand(CLI::App& app, Action& chosen) {
    auto kind = std::make_shared<std::string>();
    auto typed = std::make_shared<std::string>();
    CLI::App* command = app.add_subcommand("complete-records", "What a shell offers for records")->group("");
    command->add_option("KIND", *kind, "tasks, notes, projects, clients, tags or groups")->required();
    command->add_option("TYPED", *typed, "What was typed so far");
    command->callback([=, &chosen] {
        chosen = [=](const ProcessInfo& process) {
            const auto found = std::ranges::find(kinds, *kind, &Kind::name);
            return found != kinds.end() ? printOffers(*found, *typed, process) : ExitStatus::usage;
        };
    });
}

} // namespace quillorn
