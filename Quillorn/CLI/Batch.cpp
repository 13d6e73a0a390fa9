#include "CLI/Batch.h"

#include "CLI/Output.h"
#include "Platform/Terminal.h"
#include "Records/RecordChoice.h"
#include "Store/StoreError.h"

#include <fmt/core.h>
#include <iostream>
#include <stdexcept>

namespace quillorn {

namespace {

constexpr std::size_t mostArguments = 100'000;
constexpr std::size_t longestInput = 16'000'000;

void addLines(std::istream& input, std::vector<std::string>& arguments) {
    std::size_t length = 0;
    for (std::string line; std::getline(input, line);) {
        length += line.size();
        line.resize(std::min(line.find_first_of("\t\r"), line.size()));
        if (!line.empty())
            arguments.push_back(line);
        if (length > longestInput || arguments.size() > mostArguments)
            throw std::runtime_error("standard input has too many lines");
    }
}

/// What went wrong with an argument that is named in front of it.
void report(const std::string& argument, const std::string& reason) {
    printError(fmt::format("{}: {}", escapeControls(argument), reason));
}

} // namespace

std::vector<std::string> expandedArguments(const std::vector<std::string>& arguments) {
    std::vector<std::string> all;
    for (const std::string& each : arguments)
        if (each == "-")
            addLines(std::cin, all);
        else
            all.push_back(each);
    return all;
}

void Batch::run(const std::function<void(const std::string& argument)>& act) {
    for (const std::string& argument : m_arguments)
        try {
            act(argument);
        } catch (const RecordChoiceError& error) {
            m_hasFailed = true;
            report(argument, error.reason());
        } catch (const StoreError&) {
            throw; // concerns them all
        } catch (const std::runtime_error& error) {
            m_hasFailed = true;
            report(argument, error.what());
        }
}

} // namespace quillorn
