#include "Describe/Writers.h"

#include "Models/Settings.h"

#include <fmt/format.h>

namespace quillorn {

namespace {

constexpr std::string_view head = R"(# Completion of quillorn for fish; made from the definitions of its commands.

function __quillorn_words
    string match --invert -- '-*' (commandline -opc)[2..]
end

# Whether the words before the cursor, options left out, are these.
function __quillorn_at
    set -l words (__quillorn_words)
    test "$words" = "$argv"
end

# Whether they begin with these.
function __quillorn_in
    set -l words (__quillorn_words)
    set -l count (count $argv)
    test "$words[1..$count]" = "$argv"
end

# Records of a kind; what was typed of a title leads to it by the title itself.
function __quillorn_records
    set -l typed (commandline -ct | string unescape)
    command quillorn complete-records $argv[1] -- "$typed" 2>/dev/null | while read -l -d \t id name
        printf '%s\t%s\n' $id $name
        contains $argv[1] tasks notes; and test -n "$typed"; and printf '%s\t%s\n' $name $id
    end
end

function __quillorn_keys
    string split ' ' '{keys}'
end

complete -c quillorn -f
)";

std::string inQuotes(std::string_view text) {
    std::string result = "'";
    for (const char character : text) {
        if (character == '\'' || character == '\\')
            result += '\\';
        result += character;
    }
    return result + "'";
}

std::string optionLine(const OptionEntry& option, const std::string& condition) {
    std::string line = fmt::format("complete -c quillorn -n {}", inQuotes(condition));
    for (const std::string& name : option.names)
        line += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
    if (!option.value.empty())
        line += " -x";
    if (const Offer offer = offerFor(option.value); offer.kind == Offer::Kind::records)
        line += fmt::format(" -a '(__quillorn_records {})'", offer.records);
    return line + fmt::format(" -d {}\n", inQuotes(option.summary));
}

std::string commandLines(const CommandEntry& command) {
    const std::string words = fmt::format("{}", fmt::join(command.words, " "));
    const std::string at = "__quillorn_at " + words;
    // The words of a command with arguments go on with those.
    const std::string in = command.commands.empty() ? "__quillorn_in " + words : at;
    std::string lines = "\n";
    for (const OptionEntry& option : command.options)
        lines += optionLine(option, in);
    for (const CommandEntry& below : command.commands)
        lines += fmt::format("complete -c quillorn -n {} -a {} -d {}\n", inQuotes(at), below.words.back(),
                             inQuotes(below.summary));
    // Only the first argument is one that a shell can offer anything for, and those that are like it.
    if (command.arguments.empty())
        return lines;
    const ArgumentEntry& argument = command.arguments.front();
    const Offer offer = offerFor(argument.name);
    const std::string where = inQuotes(argument.isRepeated ? in : at);
    if (offer.kind == Offer::Kind::settingKeys)
        lines += fmt::format("complete -c quillorn -n {} -a '(__quillorn_keys)'\n", where);
    else if (offer.kind == Offer::Kind::files)
        lines += fmt::format("complete -c quillorn -n {} -F\n", where);
    else if (offer.kind == Offer::Kind::records)
        lines += fmt::format("complete -c quillorn -n {} -a '(__quillorn_records {})'\n", where, offer.records);
    return lines;
}

} // namespace

std::string fishCompletion(const CommandEntry& program) {
    std::string text = fmt::format(head, fmt::arg("keys", fmt::join(settingKeys(), " ")));
    for (const CommandEntry* command : allCommands(program))
        text += commandLines(*command);
    return text;
}

} // namespace quillorn
