#include "CLI/Invocation.h"
#include "CLI/KeyInput.h"
#include "CLI/Output.h"
#include "Platform/Process.h"
#include "Platform/StandardStreams.h"

#include <exception>

int main(int count, char** arguments) {
    constexpr int failure = static_cast<int>(quillorn::ExitStatus::failure);
    int status = failure;
    try {
        quillorn::prepareStandardStreams();
        quillorn::configureMemory();
        const quillorn::ProcessInfo process = quillorn::ProcessInfo::of(count, arguments);
        quillorn::hideKeys(count, arguments);
        status = static_cast<int>(quillorn::invoke(process));
    } catch (const std::exception& error) {
        quillorn::printError(error.what());
    }
    return quillorn::flushStandardStreams() ? status : failure;
}
