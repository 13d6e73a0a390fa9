#include "Describe/Writers.h"

#include <algorithm>
#include <fmt/format.h>
#include <ranges>
#include <sstream>

namespace quillorn {

namespace {

/// Text that a reader of Markdown sees as it stands.
std::string plain(std::string_view text) {
    std::string result;
    for (const char character : text) {
        if (std::string_view(R"(\`*_<>[]|)").find(character) != std::string_view::npos)
            result += '\\';
        result += character;
    }
    return result;
}

std::string inUsage(const ArgumentEntry& argument) {
    const std::string name = argument.name + (argument.isRepeated ? "…" : "");
    return argument.isRequired ? name : "[" + name + "]";
}

/// Each command has --help, and it need not be said each time.
bool isListed(const OptionEntry& option) {
    return option.names.back() != "--help";
}

std::string usage(const CommandEntry& command) {
    std::string line = fmt::format("quillorn {}", fmt::join(command.words, " "));
    for (const ArgumentEntry& argument : command.arguments)
        line += " " + inUsage(argument);
    for (const OptionEntry& option : command.options)
        if (option.isRequired)
            line += fmt::format(" {} {}", option.names.back(), option.value);
    const bool isOptional = std::ranges::any_of(
        command.options, [](const OptionEntry& option) { return isListed(option) && !option.isRequired; });
    return line + (isOptional ? " [OPTIONS]\n" : "\n");
}

std::string optionItem(const OptionEntry& option) {
    const std::string value = option.value.empty() ? "" : " " + option.value;
    return fmt::format("- `{}{}`: {}\n", fmt::join(option.names, ", "), value, plain(option.summary));
}

std::string items(const CommandEntry& command) {
    std::string list;
    for (const ArgumentEntry& argument : command.arguments)
        list += fmt::format("- `{}`: {}\n", argument.name, plain(argument.summary));
    for (const OptionEntry& option : command.options)
        if (isListed(option))
            list += optionItem(option);
    return list.empty() ? list : "\n" + list;
}

std::string inBlock(const std::string& lines) {
    return lines.empty() ? lines : "\n```\n" + lines + "```\n";
}

/// Indented lines of a footer are examples of what to type.
std::string footer(const CommandEntry& command) {
    std::istringstream lines(command.footer);
    std::string words;
    std::string examples;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("  "))
            examples += line.substr(2) + "\n";
        else
            words += plain(line) + "\n";
    }
    return (words.empty() ? words : "\n" + words) + inBlock(examples);
}

/// A command with all below it, one `level` of headings for each.
std::string section(const CommandEntry& command, std::size_t level) {
    std::string text = fmt::format("\n{} quillorn {}\n\n{}.\n", std::string(level, '#'), fmt::join(command.words, " "),
                                   plain(command.summary));
    if (command.commands.empty())
        text += inBlock(usage(command)) + items(command);
    text += footer(command);
    for (const CommandEntry& below : command.commands)
        text += section(below, level + 1);
    return text;
}

/// The titles of the groups, in the order in which they are met.
std::vector<std::string> groups(const CommandEntry& program) {
    std::vector<std::string> titles;
    for (const CommandEntry& command : program.commands)
        if (std::ranges::find(titles, command.group) == titles.end())
            titles.push_back(command.group);
    return titles;
}

/// Links to the commands of a group.
std::string contents(const CommandEntry& program, const std::string& group) {
    std::vector<std::string> links;
    for (const CommandEntry& command : program.commands)
        if (command.group == group)
            links.push_back(fmt::format("[{0}](#quillorn-{0})", command.words.back()));
    return fmt::format("| {} | {} |\n", group, fmt::join(links, ", "));
}

} // namespace

std::string markdownPage(const CommandEntry& program) {
    std::string text =
        "<!-- Made from the definitions of the commands by quillorn-describe; not to be edited here. -->\n"
        "# The command line\n\n" +
        plain(program.summary) +
        "\n\nA record is named by its id, its name, the beginning of its id (four digits or more) or a "
        "part of its name,\nwhichever fits first, in either case. Success ends with status 0, failures "
        "with 1, a wrong command line with 2.\n\n| What | Commands |\n|---|---|\n";
    for (const std::string& group : groups(program))
        text += contents(program, group);
    text += "\nEach command has `-h, --help`. The program itself takes:\n\n";
    for (const OptionEntry& option : program.options)
        text += optionItem(option);
    for (const std::string& group : groups(program)) {
        text += fmt::format("\n## {}\n", group);
        for (const CommandEntry& command : program.commands)
            if (command.group == group)
                text += section(command, 3);
    }
    return text;
}

} // namespace quillorn
