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
    // Only the first argument is one that a shell can offer anything for.
    const Offer offer = command.arguments.empty() ? Offer::nothing : offerFor(command.arguments.front());
    if (offer == Offer::settingKeys)
        lines += fmt::format("complete -c quillorn -n {} -a '(__quillorn_keys)'\n", inQuotes(at));
    else if (offer == Offer::files)
        lines += fmt::format("complete -c quillorn -n {} -F\n", inQuotes(at));
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
