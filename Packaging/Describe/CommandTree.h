#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

struct OptionEntry {
    /// As typed: "-h", "--help".
    std::vector<std::string> names;
    /// What stands for its value, for example "N"; empty for a flag.
    std::string value;
    std::string summary;
    bool isRequired = false;
};

struct ArgumentEntry {
    std::string name;
    std::string summary;
    /// Whether it takes all the words that follow.
    bool isRepeated = false;
    bool isRequired = false;
};

/// A command; the program itself is the one without words.
struct CommandEntry {
    /// What selects it, for example "settings" and "get".
    std::vector<std::string> words;
    std::string summary;
    /// More to say about it, in lines; may be empty.
    std::string footer;
    /// The title that it stands under in a list of all commands.
    std::string group;
    std::vector<OptionEntry> options;
    std::vector<ArgumentEntry> arguments;
    /// One that has commands of its own does nothing by itself.
    std::vector<CommandEntry> commands;
};

/// The commands that the program parses.
CommandEntry commandTree();

/// A command and all below it, from the top.
std::vector<const CommandEntry*> allCommands(const CommandEntry& top);

/// What a shell can offer for an argument or for the value of an option.
struct Offer {
    enum class Kind { nothing, settingKeys, files, records } kind = Kind::nothing;
    /// For records: "tasks", "projects" and so on, as the program's command for completions knows them.
    std::string_view records{};
};
/// By the name of the argument or value.
Offer offerFor(std::string_view name);

} // namespace quillorn
