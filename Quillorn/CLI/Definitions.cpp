#include "CLI/Definitions.h"

#include <CLI/CLI.hpp>
#include <utility>

namespace quillorn {

CLI::App* addCommand(CLI::App* parent, const char* name, const char* words) {
    return parent->add_subcommand(name, words);
}

CLI::App* addParent(CLI::App& app, const char* name, const char* words) {
    CLI::App* parent = app.add_subcommand(name, words);
    parent->require_subcommand(0, 1);
    return parent;
}

void onGiven(CLI::App* command, std::function<void()> handle) {
    command->callback(std::move(handle));
}

CLI::Option* addWords(CLI::App* command, const char* name, std::vector<std::string>& words, const char* summary) {
    return command->add_option(name, words, summary)->required()->type_name("");
}

CLI::Option* addWord(CLI::App* command, const char* name, std::string& word, const char* summary) {
    return command->add_option(name, word, summary)->required()->type_name("");
}

CLI::Option* addRepeated(CLI::App* command, const char* name, std::vector<std::string>& values, const char* type,
                         const char* summary) {
    return command->add_option(name, values, summary)->type_name(type)->expected(1)->take_all();
}

void addJson(CLI::App* command, bool& json) {
    command->add_flag("--json", json, "Print JSON");
}

void addYes(CLI::App* command, bool& isConfirmed) {
    command->add_flag("--yes", isConfirmed, "Don't ask; needed where there is no terminal to ask on");
}

void requireOne(const CLI::App* command, const std::vector<const char*>& names) {
    std::string list;
    for (const char* name : names) {
        if (command->get_option(name)->count() > 0)
            return;
        list += (list.empty() ? "" : " or ") + std::string(name);
    }
    throw CLI::RequiredError(list);
}

} // namespace quillorn
