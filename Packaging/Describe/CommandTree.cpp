#include "Describe/CommandTree.h"

#include "CLI/CommandLine.h"

#include <CLI/CLI.hpp>

namespace quillorn {

namespace {

OptionEntry optionEntry(const CLI::Option& option) {
    OptionEntry entry;
    for (const std::string& name : option.get_snames())
        entry.names.push_back("-" + name);
    for (const std::string& name : option.get_lnames())
        entry.names.push_back("--" + name);
    // CLI11 appends what the value is checked for, after a colon.
    if (option.get_type_size() != 0)
        entry.value = option.get_type_name().substr(0, option.get_type_name().find(':'));
    entry.summary = option.get_description();
    entry.isRequired = option.get_required();
    return entry;
}

CommandEntry commandEntry(const CLI::App& app, std::vector<std::string> words) {
    CommandEntry entry{std::move(words), app.get_description(), app.get_footer(), app.get_group(), {}, {}, {}};
    for (const CLI::Option* option : app.get_options({})) {
        if (option->get_positional())
            entry.arguments.push_back({option->get_name(true), option->get_description(),
                                       option->get_items_expected_max() > 1, option->get_required()});
        else
            entry.options.push_back(optionEntry(*option));
    }
    for (const CLI::App* command : app.get_subcommands({})) {
        if (command->get_group().empty()) // for programs alone
            continue;
        std::vector<std::string> below = entry.words;
        below.push_back(command->get_name());
        entry.commands.push_back(commandEntry(*command, std::move(below)));
    }
    return entry;
}

} // namespace

CommandEntry commandTree() {
    Action chosen;
    const std::shared_ptr<const CLI::App> app = defineCommands(chosen);
    return commandEntry(*app, {});
}

std::vector<const CommandEntry*> allCommands(const CommandEntry& top) {
    std::vector<const CommandEntry*> all{&top};
    for (const CommandEntry& command : top.commands) {
        const std::vector<const CommandEntry*> below = allCommands(command);
        all.insert(all.end(), below.begin(), below.end());
    }
    return all;
}

Offer offerFor(std::string_view name) {
    using Kind = Offer::Kind;
    constexpr std::pair<std::string_view, Offer> offers[] = {
        {"KEY", {Kind::settingKeys}},
        {"FILE", {Kind::files}},
        {"TASK", {Kind::records, "tasks"}},
        {"T", {Kind::records, "tasks"}},
        {"PROJECT", {Kind::records, "projects"}},
        {"P", {Kind::records, "projects"}},
        {"CLIENT", {Kind::records, "clients"}},
        {"C", {Kind::records, "clients"}},
        {"TAG", {Kind::records, "tags"}},
        {"GROUP", {Kind::records, "groups"}},
        {"NOTE", {Kind::records, "notes"}},
    };
    for (const auto& [known, offer] : offers)
        if (known == name)
            return offer;
    return {};
}

} // namespace quillorn
