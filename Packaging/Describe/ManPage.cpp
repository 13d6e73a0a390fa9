#include "Describe/Writers.h"

#include "Models/Settings.h"

#include <fmt/format.h>

namespace quillorn {

namespace {

/// Text that a formatter sets as it stands.
std::string plain(std::string_view text) {
    std::string result;
    bool lineBegins = true;
    for (const char character : text) {
        if (lineBegins && (character == '.' || character == '\''))
            result += "\\&";
        if (character == '\\')
            result += "\\e";
        else if (character == '-')
            result += "\\-";
        else
            result += character;
        lineBegins = character == '\n';
    }
    return result;
}

std::string bold(std::string_view text) {
    return "\\fB" + plain(text) + "\\fR";
}

std::string italic(std::string_view text) {
    return "\\fI" + plain(text) + "\\fR";
}

std::string optionTerm(const OptionEntry& option) {
    std::string term;
    for (const std::string& name : option.names)
        term += (term.empty() ? "" : ", ") + bold(name);
    return option.value.empty() ? term : term + " " + italic(option.value);
}

/// An entry of a list: a term, and what it is.
std::string item(const std::string& term, std::string_view text) {
    return fmt::format(".TP\n{}\n{}\n", term, plain(text));
}

/// Each command has --help, and it need not be said each time.
bool isHelp(const OptionEntry& option) {
    return option.names.back() == "--help";
}

std::string usage(const CommandEntry& command) {
    std::string line = bold(fmt::format("quillorn {}", fmt::join(command.words, " ")));
    for (const OptionEntry& option : command.options)
        if (!isHelp(option))
            line += " [" + bold(option.names.back()) + (option.value.empty() ? "" : " " + italic(option.value)) + "]";
    for (const ArgumentEntry& argument : command.arguments)
        line += " " + italic(argument.name);
    return line;
}

std::string synopsis(const CommandEntry& program) {
    std::string text = ".SH SYNOPSIS\n";
    for (const CommandEntry* command : allCommands(program))
        if (command->commands.empty())
            text += usage(*command) + "\n.br\n";
    return text + bold("quillorn") + " [" + italic("COMMAND") + "] " + bold("--help") + " | " + bold("--version") +
           "\n";
}

std::string section(const CommandEntry& command) {
    std::string text = fmt::format(".SS {}\n{}.\n", usage(command), plain(command.summary));
    for (const ArgumentEntry& argument : command.arguments)
        text += item(italic(argument.name), argument.summary);
    for (const OptionEntry& option : command.options)
        if (!isHelp(option))
            text += item(optionTerm(option), option.summary);
    if (!command.footer.empty())
        text += ".PP\n" + plain(command.footer) + "\n";
    return text;
}

std::string commands(const CommandEntry& program) {
    std::string text = ".SH OPTIONS\n";
    for (const OptionEntry& option : program.options)
        text += item(optionTerm(option), option.summary);
    text += ".SH COMMANDS\n";
    for (const CommandEntry* command : allCommands(program))
        if (command->commands.empty())
            text += section(*command);
    return text;
}

std::string defaultText(const Setting& setting) {
    const std::string value = std::visit(
        [](const auto& held) -> std::string {
            if constexpr (std::is_same_v<std::decay_t<decltype(held)>, std::monostate>)
                return {};
            else
                return fmt::format("{}", held);
        },
        setting.defaultValue);
    return value.empty() ? std::string() : fmt::format(" ({})", value);
}

std::string settings() {
    std::string text = ".SH SETTINGS\nWith their defaults:\n";
    for (const Setting& setting : settingsCatalogue)
        if (setting.kind == SettingKind::user)
            text += item(bold(setting.key) + plain(defaultText(setting)), setting.summary);
    return text;
}

struct Fact {
    const char* term;
    const char* text;
};

std::string facts(const char* title, std::initializer_list<Fact> list) {
    std::string text = fmt::format(".SH {}\n", title);
    for (const Fact& each : list)
        text += item(bold(each.term), each.text);
    return text;
}

} // namespace

std::string manPage(const CommandEntry& program, std::string_view version, std::string_view date) {
    return fmt::format(".\\\" Made from the definitions of the commands.\n"
                       ".TH QUILLORN 1 {} \"Quillorn {}\" \"User Commands\"\n"
                       ".SH NAME\nquillorn \\- track the work of a freelancer\n",
                       date, version) +
           synopsis(program) + ".SH DESCRIPTION\n" + plain(program.summary) + "\n" + commands(program) + settings() +
           facts("EXIT STATUS", {{"0", "Success."}, {"1", "Failure."}, {"2", "The command line is wrong."}}) +
           facts("ENVIRONMENT", {{"QUILLORN_API_KEY", "The API key of quillorn serve."},
                                 {"QUILLORN_DEMO", "1 serves an empty store in memory."},
                                 {"TMPDIR", "Where backups and restores put their temporary files."},
                                 {"XDG_CONFIG_HOME", "The folder of settings in place of ~/.config."},
                                 {"XDG_DATA_HOME", "The folder of data in place of ~/.local/share."}}) +
           facts("FILES", {{"~/.local/share/Quillorn/Quillorn.store", "The data: an SQLite database."},
                           {"~/.local/share/Quillorn/Backups", "Its backups, unless backupFolderPath is set."},
                           {"~/.config/Quillorn/settings.json", "The settings."}}) +
           facts("EXAMPLES",
                 {{"systemctl --user enable --now quillorn", "Serve from now on, whenever you are logged in."},
                  {"quillorn settings set apiPort 8080", "Serve on another port from the next start."}});
}

} // namespace quillorn
