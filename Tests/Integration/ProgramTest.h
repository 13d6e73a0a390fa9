#pragma once

#include "Integration/ServerProcess.h"

#include <gtest/gtest.h>

namespace quillorn {

struct Outcome {
    int status;
    std::string output;
    std::string errors;
};

/// Runs the program in a home of the test's own.
struct ProgramTest : testing::Test {
    Outcome run(std::vector<std::string> arguments) const {
        ProgramProcess program(home.path(), {.arguments = std::move(arguments)});
        const int status = program.wait();
        return {status, program.output(), program.errors()};
    }
    std::string outputOf(std::vector<std::string> arguments) const { return run(std::move(arguments)).output; }

    TemporaryFolder home;
};

/// The same beside a server.
struct ServerTest : ProgramTest {
    ServerProcess server{home.path()};
};

} // namespace quillorn
