#include "AI/ReportHTML.h"
#include "CLI/Conversation.h"
#include "CLI/LineEditor.h"
#include "CLI/Output.h"
#include "CLI/Words.h"
#include "Models/DayPhrase.h"
#include "Platform/Terminal.h"
#include "Platform/TerminationSignals.h"
#include "Platform/Text.h"

#include <atomic>
#include <csignal>
#include <cstdio>
#include <fmt/core.h>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <unistd.h>

namespace quillorn {

namespace {

ExitStatus statusOfSignal(int signal) {
    return static_cast<ExitStatus>(128 + signal);
}

void showHistory(const AIChatView& view, bool json) {
    Json::Array array;
    for (const auto& message : view.messages()) {
        const char* role = message.role == ChatRole::user ? "user" : "assistant";
        if (json)
            array.emplace_back(Json::Object{
                {"role", role}, {"content", message.content}, {"createdAt", formatISO8601(message.createdAt)}});
        else
            fmt::print("{}: {}\n\n", message.role == ChatRole::user ? "You" : "AI",
                       textFor(stdout, message.content, LineEnds::kept));
    }
    if (json)
        printJson(array);
}

ExitStatus clearHistory(Session& session, AIChatView& view, bool confirmed) {
    if (!confirmed && ::isatty(STDIN_FILENO) != 1) {
        printError("clearing deletes the conversation; without a terminal to ask on it needs --yes");
        return ExitStatus::usage;
    }
    if (!confirmed) {
        const auto words = view.clearConfirmation();
        fmt::print(stderr, "{}\n\n{}\n\nClear? [y/N] ", words.title, words.text);
        std::string answer;
        std::getline(std::cin, answer);
        if (answer != "y" && answer != "Y" && answer != "yes") {
            fmt::print(stderr, "Cancelled\n");
            return ExitStatus::failure;
        }
    }
    view.clear();
    session.saveChanges();
    return ExitStatus::success;
}

/// Runs one exchange, which a signal ends as "Stop" does.
ExitStatus exchange(Session& session, const ChatSubjectOptions& options, const std::function<void(AIChatView&)>& begin,
                    bool showsText, const std::function<void(AIChatView&)>& end) {
    Conversation conversation(session, options);
    std::atomic<int> caught = 0;
    {
        const TerminationSignals signals([&](int signal) {
            caught = signal;
            conversation.stop();
        });
        conversation.await(begin, showsText);
    }
    if (caught != 0)
        return statusOfSignal(caught);
    end(conversation.view());
    return ExitStatus::success;
}

/// Line by line, until the user ends it.
ExitStatus converse(Session& session, const ChatSubjectOptions& options) {
    Conversation conversation(session, options);
    LineEditor editor("> ");
    std::atomic<bool> isAnswering = false;
    std::atomic<bool> isEnding = false;
    const TerminationSignals signals([&](int signal) {
        if (isAnswering) {
            isEnding = signal == SIGTERM;
            return conversation.stop();
        }
        editor.restoreTerminal();
        std::_Exit(128 + signal); // all that was said is kept
    });
    while (!isEnding) {
        const auto line = editor.read();
        if (!line)
            break;
        if (trimWhitespaceAndNewlines(*line).empty())
            continue;
        isAnswering = true;
        try {
            conversation.await(
                [&](AIChatView& view) {
                    view.setInputText(*line);
                    view.send();
                },
                true);
        } catch (const std::runtime_error& error) {
            printError(error.what()); // and the next line may fare better
        }
        isAnswering = false;
    }
    if (isEnding)
        return statusOfSignal(SIGTERM);
    fmt::print("\n");
    return ExitStatus::success;
}

std::chrono::local_days dayOf(const std::string& typed, const Session& session) {
    const auto day = dayNamed(typed, session.clock().now(), session.calendar());
    if (!day)
        throw std::invalid_argument(fmt::format("\"{}\" is no date such as 2026-01-31 or \"monday\"", typed));
    return *day;
}

} // namespace

ExitStatus chat(const ChatOptions& options, const ProcessInfo& process) {
    Session session(process);
    if (session.hasFailed())
        return ExitStatus::failure;
    if (options.history || options.clear) {
        Conversation conversation(session, options);
        if (options.clear)
            return clearHistory(session, conversation.view(), options.confirmed);
        showHistory(conversation.view(), options.json);
        return ExitStatus::success;
    }
    std::string message = joined(options.message);
    if (options.message.empty()) {
        if (::isatty(STDIN_FILENO) == 1)
            return converse(session, options);
        message.assign(std::istreambuf_iterator<char>(std::cin), {});
    }
    if (trimWhitespaceAndNewlines(message).empty()) {
        printError("there is no message");
        return ExitStatus::usage;
    }
    return exchange(
        session, options,
        [&](AIChatView& view) {
            view.setInputText(message);
            view.send();
        },
        true, [](AIChatView&) {});
}

ExitStatus summarise(const SummaryOptions& options, const ProcessInfo& process) {
    Session session(process);
    if (session.hasFailed())
        return ExitStatus::failure;
    DayRange range;
    try {
        const auto first = dayOf(options.from, session);
        const auto last = dayOf(options.to, session);
        if (last < first)
            throw std::invalid_argument("the period ends before it begins");
        range = {session.calendar().instant(first), session.calendar().instant(last)};
    } catch (const std::invalid_argument& error) {
        printError(error.what());
        return ExitStatus::usage;
    }
    return exchange(
        session, options, [&](AIChatView& view) { view.generateSummary(range); }, !options.html,
        [&](AIChatView& view) {
            const auto messages = view.messages();
            if (options.html && !messages.empty())
                fmt::print("{}\n", textFor(stdout, reportHTML(messages.back().content)));
        });
}

} // namespace quillorn
