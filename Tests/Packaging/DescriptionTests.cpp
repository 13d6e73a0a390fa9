#include "Integration/ProgramTest.h"
#include "Models/Settings.h"

#include <gmock/gmock.h>
#include <regex>
#include <set>

namespace quillorn {
namespace {

using testing::_;
using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;
using Words = std::vector<std::string>;
using Names = std::set<std::string>;

std::string joined(const Words& words, const std::string& between) {
    std::string text;
    for (const std::string& word : words)
        text += between + word;
    return text;
}

Names names(const Words& words) {
    return {words.begin(), words.end()};
}

bool isThere(const std::string& program) {
    return std::filesystem::exists(program);
}

/// What --help says about a command.
struct Help {
    Words command;
    Names options;
    Names commands;
};

/// The man page and the completions that were made with the program, against what the program says itself.
struct Descriptions : ProgramTest {
    static std::string file(const std::string& name) { return QUILLORN_BUILD "/Packaging/" + name; }

    /// The lines that a program of others prints; it must find nothing to complain about.
    Words linesOf(const std::string& program, Words arguments) const {
        ProgramProcess process(home.path(), {.program = program, .arguments = std::move(arguments)});
        EXPECT_EQ(process.wait(), 0) << process.output();
        EXPECT_EQ(process.errors(), "");
        Words lines;
        std::istringstream stream(process.output());
        for (std::string line; std::getline(stream, line);)
            lines.push_back(line);
        return lines;
    }

    /// A command and all below it.
    std::vector<Help> helps(const Words& command = {}) const {
        Words arguments = command;
        arguments.emplace_back("--help");
        const std::string text = outputOf(arguments);
        std::vector<Help> all{{command, {}, {}}};
        const std::regex option(R"(\n  (?:(-\w),)?(--[\w-]+)[ \n])"), below(R"(\n  ([\w-]+) )");
        const std::size_t commands = std::min(text.find(command.empty() ? "\nTasks:" : "\nSubcommands:"), text.size());
        const std::string options = text.substr(0, commands), rest = text.substr(commands);
        const std::sregex_iterator end;
        for (std::sregex_iterator match(options.begin(), options.end(), option); match != end; ++match)
            all.front().options.insert({match->str(2), match->str(1)});
        all.front().options.erase("");
        for (std::sregex_iterator match(rest.begin(), rest.end(), below); match != end; ++match) {
            all.front().commands.insert(match->str(1));
            Words words = command;
            words.push_back(match->str(1));
            for (Help& each : helps(words))
                all.push_back(std::move(each));
        }
        return all;
    }

    /// What bash offers for the last of the words behind "quillorn".
    Names inBash(Words words) const {
        words.insert(words.begin(), {"--norc", "-c",
                                     "PATH='" QUILLORN_BUILD "':$PATH; source '" + file("quillorn.bash") +
                                         "'; COMP_WORDS=(quillorn \"$@\") COMP_CWORD=$#; _quillorn; "
                                         "((!${#COMPREPLY[@]})) || printf '%s\\n' \"${COMPREPLY[@]}\"",
                                     "bash"});
        return names(linesOf(QUILLORN_BASH, std::move(words)));
    }
    Names inFish(const Words& words) const {
        Words offers = linesOf(QUILLORN_FISH, {"--no-config", "-c",
                                               "set PATH " QUILLORN_BUILD " $PATH; source '" + file("quillorn.fish") +
                                                   "'; complete -C 'quillorn" + joined(words, " ") + "'"});
        for (std::string& offer : offers)
            offer.resize(std::min(offer.find('\t'), offer.size()));
        return names(offers);
    }
    /// What each shell that is there offers, by its name.
    std::map<std::string, Names> offered(const Words& words) const {
        std::map<std::string, Names> offers{{"bash", inBash(words)}};
        if (isThere(QUILLORN_FISH))
            offers.emplace("fish", inFish(words));
        return offers;
    }
};

TEST_F(Descriptions, shellsOfferWhatHelpLists) {
    const std::vector<Help> all = helps();
    ASSERT_GT(all.size(), 12U);
    for (const Help& each : all) {
        Words words = each.command;
        words.emplace_back("-");
        EXPECT_THAT(offered(words), Each(Pair(_, each.options))) << joined(words, " ");
        words.back() = "";
        if (!each.commands.empty()) {
            EXPECT_THAT(offered(words), Each(Pair(_, each.commands))) << joined(words, " ");
        }
    }
}

TEST_F(Descriptions, shellsOfferValuesWhereTheyBelong) {
    const std::string backup = home / "of May 1.store.lzfse";
    writeFile(backup, "");
    Names keys;
    for (const Setting& setting : settingsCatalogue)
        if (setting.kind == SettingKind::user)
            keys.emplace(setting.key);
    const std::pair<Words, Names> cases[] = {
        {{"settings", "set", ""}, keys},
        {{"settings", "get", "backupF"}, {"backupFolderPath"}},
        {{"settings", "get", "--json", "apiP"}, {"apiPort"}},
        {{"settings", "reset", "notePre"}, {}},
        {{"settings", "set", "apiPort", ""}, {}},
        {{"settings", "list", "api"}, {}},
        {{"serve", "--port", ""}, {}},
        {{"serve", "--key", "s"}, {}},
        {{"serve", "--port", "80", "--ex"}, {"--external"}},
        {{"restore", home / "of"}, {backup}},
        {{"restore", "--yes", home / "of"}, {backup}},
        {{"backup", home / "of"}, {}},
        {{"timer", "start", ""}, {}},
    };
    for (const auto& [words, offers] : cases)
        EXPECT_THAT(offered(words), Each(Pair(_, offers))) << joined(words, " ");
}

TEST_F(Descriptions, shellsOfferTheRecordsOfTheStore) {
    const std::string evil = "Evil $(touch pwned) `touch pwned` \"'\\";
    run({"project", "add", evil});
    run({"project", "add", "Site"});
    run({"tag", "add", "big deal"});
    run({"add", "--plain", evil});
    run({"add", "--plain", "Write; rm -rf ."});
    const std::string write = outputOf({"list", "--search", "write"}).substr(0, 36);
    const std::string bad = outputOf({"list", "--search", "evil"}).substr(0, 36);
    const std::pair<Words, Names> cases[] = {
        {{"done", "wri"}, {write}},
        {{"done", bad, write.substr(0, 8)}, {write}},
        {{"show", "evil"}, {bad}},
        {{"add", "Call", "--project", "si"}, {"Site"}},
        {{"list", "--tag", "BIG"}, {"big\\ deal"}},
        {{"list", "--tag", "\"bi"}, {"big deal"}},
        {{"list", "--project", "ev"}, {R"(Evil\ \$\(touch\ pwned\)\ \`touch\ pwned\`\ \"\'\\)"}},
        {{"edit", "wri", "--due", ""}, {}},
        {{"comment", write, ""}, {}},
    };
    for (const auto& [words, offers] : cases)
        EXPECT_EQ(inBash(words), offers) << joined(words, " ");
    EXPECT_EQ(inBash({"done", ""}), (Names{write + "  Write; rm -rf .", bad + "  " + evil, " "}));
    if (isThere(QUILLORN_FISH)) {
        EXPECT_EQ(inFish({"done", "Wri"}), Names{"Write; rm -rf ."});
        EXPECT_EQ(inFish({"list", "--project", "Si"}), Names{"Site"});
    }
    EXPECT_FALSE(std::filesystem::exists("pwned"));
}

TEST_F(Descriptions, zshHasAFunctionForEachCommand) {
    const std::string script = readFile(file("_quillorn"));
    EXPECT_TRUE(script.starts_with("#compdef quillorn\n"));
    for (const Help& each : helps()) {
        const std::string name = "\n_quillorn" + joined(each.command, "_") + "() {\n";
        const std::size_t begin = script.find(name);
        ASSERT_NE(begin, std::string::npos) << name;
        const std::string body = script.substr(begin, script.find("\n}\n", begin) - begin);
        for (const std::string& option : each.options)
            EXPECT_TRUE(std::regex_search(body, std::regex("['{,]" + option + "[\\[,}]"))) << name << option;
        for (const std::string& command : each.commands) {
            EXPECT_THAT(body, HasSubstr("'" + command + ":"));
            EXPECT_THAT(body, HasSubstr(command + ") _quillorn" + joined(each.command, "_") + "_" + command + " ;;"));
        }
    }
    if (isThere(QUILLORN_ZSH)) {
        EXPECT_THAT(linesOf(QUILLORN_ZSH, {"--no-rcs", "-n", file("_quillorn")}), IsEmpty());
    }
}

TEST_F(Descriptions, theManPageHasEveryCommandOptionAndSetting) {
    std::string page = readFile(file("quillorn.1"));
    page = std::regex_replace(page, std::regex(R"(\\f[BIR])"), "");
    page = std::regex_replace(page, std::regex(R"(\\-)"), "-");
    const auto sectionOf = [&](const std::string& title) {
        for (const char* macro : {"\n.SS ", "\n.SH "})
            for (const char* end : {" ", "\n"})
                if (const std::size_t begin = page.find(macro + title + end); begin != std::string::npos)
                    return page.substr(begin, page.find("\n.S", begin + 1) - begin);
        return std::string();
    };
    const Names everywhere{"-h", "--help"};
    for (const Help& each : helps()) {
        if (!each.command.empty() && !each.commands.empty())
            continue;
        const std::string title = each.command.empty() ? "OPTIONS" : "quillorn" + joined(each.command, " ");
        const std::string text = sectionOf(title);
        EXPECT_NE(text, "") << title;
        for (const std::string& option : each.options) {
            const bool isListed = std::regex_search(text, std::regex("\\.TP\n([^\n]*, )?" + option + "[ ,\n]"));
            EXPECT_EQ(isListed, each.command.empty() || !everywhere.contains(option)) << title << " " << option;
        }
    }
    for (const Setting& setting : settingsCatalogue)
        EXPECT_EQ(sectionOf("SETTINGS").find("\n.TP\n" + std::string(setting.key)) != std::string::npos,
                  setting.kind == SettingKind::user)
            << setting.key;
    if (isThere(QUILLORN_MANDOC)) {
        EXPECT_THAT(linesOf(QUILLORN_MANDOC, {"-Tlint", "-Wwarning", file("quillorn.1")}), IsEmpty());
    }
}

TEST_F(Descriptions, theDocumentIsCurrentAndHasEveryCommandAndOption) {
    const std::string document = readFile(QUILLORN_SOURCES "/docs/command-line.md");
    EXPECT_EQ(document, readFile(file("command-line.md"))) << "cp " << file("command-line.md") << " docs/";
    for (const Help& each : helps()) {
        const std::string heading =
            "\n###" + std::string(each.command.size() > 1, '#') + " quillorn" + joined(each.command, " ");
        const std::size_t begin = each.command.empty() ? 0 : document.find(heading + "\n");
        ASSERT_NE(begin, std::string::npos) << heading;
        const std::string section = document.substr(begin, document.find("\n##", begin + 1) - begin);
        for (const std::string& option : each.options)
            EXPECT_TRUE(option == "-h" || option == "--help" || section.find("\n- `" + option) != std::string::npos)
                << heading << " " << option;
    }
}

} // namespace
} // namespace quillorn
