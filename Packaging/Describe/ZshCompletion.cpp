#include "Describe/Writers.h"

#include "Models/Settings.h"

#include <fmt/format.h>

namespace quillorn {

namespace {

constexpr std::string_view records = R"sh(# Records of a kind; their names may hold anything, and are never evaluated.
_quillorn_records() {
    local -a ids shown
    local line
    for line in ${(f)"$(quillorn complete-records $1 -- "${(Q)PREFIX}" 2>/dev/null)"}; do
        ids+=("${line%%$'\t'*}")
        shown+=("${line%%$'\t'*}  ${line#*$'\t'}")
    done
    (( $#ids )) || return 1
    # What was typed may be a part of the title, which the id does not begin with.
    (( $#ids > 1 )) && compstate[insert]=menu
    compadd -U -l -d shown -a ids
}

)sh";

std::string inQuotes(std::string_view text) {
    std::string result = "'";
    for (const char character : text)
        result += character == '\'' ? "'\\''" : std::string(1, character);
    return result + "'";
}

/// What _arguments reads as the text between brackets.
std::string escaped(std::string_view text) {
    std::string result;
    for (const char character : text) {
        if (std::string_view("[]:\\").find(character) != std::string_view::npos)
            result += '\\';
        result += character;
    }
    return result;
}

std::string functionName(const CommandEntry& command) {
    std::string name = "_quillorn";
    for (const std::string& word : command.words)
        name += "_" + word;
    return name;
}

/// What completes it, for _arguments.
std::string actionFor(const Offer& offer) {
    switch (offer.kind) {
    case Offer::Kind::settingKeys:
        return "_quillorn_keys";
    case Offer::Kind::files:
        return "_files";
    case Offer::Kind::records:
        return fmt::format("_quillorn_records {}", offer.records);
    case Offer::Kind::nothing:
        break;
    }
    return " ";
}

std::string optionSpec(const OptionEntry& option) {
    std::string spec = "[" + escaped(option.summary) + "]";
    if (!option.value.empty())
        spec += ":" + option.value + ":" + actionFor(offerFor(option.value));
    if (option.names.size() == 1)
        return inQuotes(option.names.front() + spec);
    // The shell makes one word of each name.
    return fmt::format("{}{{{}}}{}", inQuotes(fmt::format("({})", fmt::join(option.names, " "))),
                       fmt::join(option.names, ","), inQuotes(spec));
}

std::string argumentSpec(const ArgumentEntry& argument) {
    return inQuotes((argument.isRepeated ? "*:" : ":") + argument.name + ":" + actionFor(offerFor(argument.name)));
}

/// The rest of the function of a command that has others below it.
std::string choice(const CommandEntry& command) {
    std::string list;
    std::string cases;
    for (const CommandEntry& below : command.commands) {
        list += fmt::format("                {}\n", inQuotes(below.words.back() + ":" + below.summary));
        cases += fmt::format("                {}) {} ;;\n", below.words.back(), functionName(below));
    }
    return fmt::format(R"( \
        '1:command:->command' '*::argument:->arguments' && return
    case $state in
        command)
            commands=(
{list}            )
            _describe -t commands command commands ;;
        arguments)
            case $line[1] in
{cases}            esac ;;
    esac
)",
                       fmt::arg("list", list), fmt::arg("cases", cases));
}

std::string function(const CommandEntry& command) {
    std::string text = fmt::format("{}() {{\n", functionName(command));
    if (!command.commands.empty())
        text += "    local curcontext=$curcontext state line\n    local -a commands\n    local -A opt_args\n";
    text += command.commands.empty() ? "    _arguments" : "    _arguments -C";
    for (const OptionEntry& option : command.options)
        text += " \\\n        " + optionSpec(option);
    for (const ArgumentEntry& argument : command.arguments)
        text += " \\\n        " + argumentSpec(argument);
    return text + (command.commands.empty() ? "\n" : choice(command)) + "}\n\n";
}

} // namespace

std::string zshCompletion(const CommandEntry& program) {
    std::string text =
        "#compdef quillorn\n# Completion of quillorn for zsh; made from the definitions of its commands.\n\n";
    for (const CommandEntry* command : allCommands(program))
        text += function(*command);
    text += fmt::format("_quillorn_keys() {{\n    compadd {}\n}}\n\n", fmt::join(settingKeys(), " "));
    return text + std::string(records) + "_quillorn \"$@\"\n";
}

} // namespace quillorn
