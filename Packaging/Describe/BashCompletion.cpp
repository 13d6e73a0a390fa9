#include "Describe/Writers.h"

#include "Models/Settings.h"

#include <fmt/format.h>
#include <set>

namespace quillorn {

namespace {

// Walks the words before the cursor: `command` becomes the longest known one, `given` counts its arguments so far.
constexpr std::string_view head = R"(# Completion of quillorn for bash; made from the definitions of its commands.

_quillorn() {{
    local word=${{COMP_WORDS[COMP_CWORD]}} command='' given=0 options='' words='' files='' i
    local keys='{keys}'
    for ((i = 1; i < COMP_CWORD; i++)); do
        case ${{COMP_WORDS[i - 1]}} in
            {valued}) continue ;;
        esac
        case "$command ${{COMP_WORDS[i]}}" in
            {commands})
                command+=" ${{COMP_WORDS[i]}}" ;;
            *' -'*) ;;
            *) given=$((given + 1)) ;;
        esac
    done
    COMPREPLY=()
    case ${{COMP_WORDS[COMP_CWORD - 1]}} in
        {valued}) return ;;
    esac
    case $command in
)";

constexpr std::string_view tail = R"(    esac
    if [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
    elif [[ $files ]]; then
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
    else
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
    fi
}

complete -F _quillorn quillorn
)";

/// The command as the script keeps it: each word with a blank before it.
std::string key(const CommandEntry& command) {
    std::string key;
    for (const std::string& word : command.words)
        key += " " + word;
    return key;
}

/// What the script does for a command, below its label.
std::string branch(const CommandEntry& command) {
    std::vector<std::string> options;
    std::vector<std::string> below;
    for (const OptionEntry& option : command.options)
        options.insert(options.end(), option.names.begin(), option.names.end());
    below.reserve(command.commands.size());
    for (const CommandEntry& each : command.commands)
        below.push_back(each.words.back());

    std::string text = fmt::format("        '{}')\n            options='{}'\n", key(command), fmt::join(options, " "));
    if (!below.empty())
        text += fmt::format("            words='{}'\n", fmt::join(below, " "));
    for (std::size_t index = 0; index < command.arguments.size(); ++index) {
        const Offer offer = offerFor(command.arguments[index]);
        if (offer == Offer::settingKeys)
            text += fmt::format("            ((given != {})) || words=$keys\n", index);
        else if (offer == Offer::files)
            text += fmt::format("            ((given != {})) || files=1\n", index);
    }
    return text + "            ;;\n";
}

} // namespace

std::string bashCompletion(const CommandEntry& program) {
    std::vector<std::string> commands;
    std::set<std::string> valued; // several commands may have an option of one name
    std::string branches;
    for (const CommandEntry* command : allCommands(program)) {
        if (!command->words.empty())
            commands.push_back("'" + key(*command) + "'");
        for (const OptionEntry& option : command->options)
            if (!option.value.empty())
                valued.insert(option.names.begin(), option.names.end());
        branches += branch(*command);
    }
    return fmt::format(head, fmt::arg("keys", fmt::join(settingKeys(), " ")),
                       fmt::arg("commands", fmt::join(commands, " | ")), fmt::arg("valued", fmt::join(valued, " | "))) +
           branches + std::string(tail);
}

} // namespace quillorn
