#include "CLI/Invocation.h"
#include "CLI/KeyInput.h"
#include "CLI/Output.h"
#include "Platform/Process.h"
#include "Platform/StandardStreams.h"

#include <exception>

// NOLINTNEXTLINE(readability-redundant-declaration): POSIX leaves it to the program, only glibc has it in a header
extern char** environ;

namespace quillorn {
namespace {

ProcessInfo describeProcess(int count, char** arguments) {
    ProcessInfo process;
    process.arguments.assign(arguments + 1, arguments + count);
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string_view text = *entry;
        const std::size_t equals = text.find('=');
        if (equals != std::string_view::npos)
            process.environment.emplace(text.substr(0, equals), text.substr(equals + 1));
    }
    return process;
}

} // namespace
} // namespace quillorn

int main(int count, char** arguments) {
    constexpr int failure = static_cast<int>(quillorn::ExitStatus::failure);
    int status = failure;
    try {
        quillorn::prepareStandardStreams();
        quillorn::configureMemory();
        const quillorn::ProcessInfo process = quillorn::describeProcess(count, arguments);
        quillorn::hideKeys(count, arguments);
        status = static_cast<int>(quillorn::invoke(process));
    } catch (const std::exception& error) {
        quillorn::printError(error.what());
    }
    return quillorn::flushStandardStreams() ? status : failure;
}
