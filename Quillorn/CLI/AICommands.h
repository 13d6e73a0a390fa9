#pragma once

#include "CLI/Commands.h"

#include <optional>
#include <string>
#include <vector>

namespace quillorn {

/// What the AI settings say.
ExitStatus showAI(bool json);
/// Asks the server for its models.
ExitStatus listModels(bool json);
ExitStatus testAI(bool json);

/// Which conversation; one of the two is given.
struct ChatSubjectOptions {
    std::optional<std::string> project;
    std::optional<std::string> client;
};

struct ChatOptions : ChatSubjectOptions {
    std::vector<std::string> message;
    bool history = false;
    bool json = false;
    bool clear = false;
    bool confirmed = false;
};
ExitStatus chat(const ChatOptions& options, const ProcessInfo& process);

struct SummaryOptions : ChatSubjectOptions {
    std::string from;
    std::string to;
    bool html = false;
};
ExitStatus summarise(const SummaryOptions& options, const ProcessInfo& process);

struct ParseOptions {
    std::vector<std::string> words;
    bool withoutAI = false;
    bool json = false;
};
/// Shows what a sentence is understood as.
ExitStatus parseSentence(const ParseOptions& options, const ProcessInfo& process);

} // namespace quillorn
