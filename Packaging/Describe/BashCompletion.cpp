#include "Describe/Writers.h"

#include "Models/Settings.h"

#include <fmt/format.h>
#include <set>

namespace quillorn {

namespace {

// Walks the words before the cursor: `command` becomes the longest known one, `given` counts its arguments so far.
constexpr std::string_view head = R"(# Completion of quillorn for bash; made from the definitions of its commands.

# Offers the records of a kind. Their names may hold anything, and are never evaluated.
_quillorn_records() {{
    local kind=$1 word=$2 quote='' line id name
    case $word in
        [\"\']*) quote=${{word:0:1}} word=${{word:1}} ;;
        *) word=${{word//\\/}} ;;
    esac
    local -a lines=()
    mapfile -t lines < <("${{COMP_WORDS[0]}}" complete-records "$kind" -- "$word" 2>/dev/null)
    for line in "${{lines[@]}}"; do
        id=${{line%%$'\t'*}} name=${{line#*$'\t'}}
        case $kind in
            tasks | notes)
                # Behind the only one there is nothing to tell it from others.
                ((${{#lines[@]}} == 1)) && COMPREPLY=("$id") || COMPREPLY+=("$id  $name") ;;
            *)
                if [[ ! $quote ]]; then
                    printf -v id %q "$id"
                elif [[ $id == *[\"\'\$\`\\]* ]]; then
                    continue
                fi
                COMPREPLY+=("$id") ;;
        esac
    done
    # What was typed of a title must not give way to what the ids have in common.
    if ((${{#lines[@]}} > 1)) && [[ $kind == tasks || $kind == notes ]]; then
        [[ ${{COMPREPLY[0]}} == "${{word^^}}"* && $word ]] || COMPREPLY+=(' ')
    fi
}}

_quillorn() {{
    local word=${{COMP_WORDS[COMP_CWORD]}} command='' given=0 options='' words='' files='' records='' i
    local previous=${{COMP_WORDS[COMP_CWORD - 1]}}
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
    case $command in
)";

constexpr std::string_view middle = R"(    esac
    case $previous in
        {valued}) [[ $records ]] || return ;;
    esac
)";

constexpr std::string_view tail = R"(    if [[ $records && $word != -* ]]; then
        _quillorn_records "$records" "$word"
    elif [[ $word == -* ]]; then
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

/// What it offers for the value of an option before the cursor.
std::string valueBranch(const CommandEntry& command) {
    std::string cases;
    bool hasValues = false;
    for (const OptionEntry& option : command.options) {
        hasValues = hasValues || !option.value.empty();
        if (const Offer offer = offerFor(option.value); offer.kind == Offer::Kind::records)
            cases += fmt::format("                {}) records={} ;;\n", fmt::join(option.names, " | "), offer.records);
    }
    if (!hasValues)
        return {};
    // Of all others nothing is known, and what the arguments are does not count.
    std::vector<std::string> others;
    for (const OptionEntry& option : command.options)
        if (!option.value.empty() && offerFor(option.value).kind != Offer::Kind::records)
            others.insert(others.end(), option.names.begin(), option.names.end());
    if (!others.empty())
        cases += fmt::format("                {}) records='' ;;\n", fmt::join(others, " | "));
    return "            case $previous in\n" + cases + "            esac\n";
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
        const Offer offer = offerFor(command.arguments[index].name);
        const char* isElsewhere = command.arguments[index].isRepeated ? "<" : "!=";
        const auto unless = [&](const std::string& assignment) {
            text += fmt::format("            ((given {} {})) || {}\n", isElsewhere, index, assignment);
        };
        if (offer.kind == Offer::Kind::settingKeys)
            unless("words=$keys");
        else if (offer.kind == Offer::Kind::files)
            unless("files=1");
        else if (offer.kind == Offer::Kind::records)
            unless(fmt::format("records={}", offer.records));
    }
    return text + valueBranch(command) + "            ;;\n";
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
           branches + fmt::format(middle, fmt::arg("valued", fmt::join(valued, " | "))) + std::string(tail);
}

} // namespace quillorn
