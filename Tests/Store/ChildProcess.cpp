#include "ChildProcess.h"

#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <csignal>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <iostream>
#include <spawn.h>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace quillorn {

namespace {

std::string program;
constexpr std::string_view childMode = "--work-on-store";

void workOnStore(const std::filesystem::path& file) {
    StoreSurroundings surroundings;
    const auto container = surroundings.open(file);
    std::unique_ptr<ModelContext> holder;
    for (std::string line; std::getline(std::cin, line);) {
        std::istringstream words(line);
        std::string command, argument, answer = "ok";
        words >> command >> argument;
        if (command == "add") {
            ModelContext context(*container);
            make<Tag>(context, {.name = argument});
            context.save();
        } else if (command == "names") {
            answer.clear();
            ModelContext context(*container);
            for (const std::string& name : namesOf(context.fetch<Tag>()))
                answer += (answer.empty() ? "" : ",") + name;
        } else if (command == "increment") {
            for (int times = std::stoi(argument); times > 0; --times)
                increment(*container);
        } else if (command == "hold") {
            holder = std::make_unique<ModelContext>(*container, ModelContext::Intent::update);
            make<Tag>(*holder, {.name = "unsaved"});
            holder->statement("UPDATE Tag SET name = 'torn'")->run();
            answer = "held";
        }
        std::cout << answer << std::endl;
    }
}

} // namespace

void increment(ModelContainer& container) {
    ModelContext context(container, ModelContext::Intent::update);
    ProjectTask& task = *context.fetch<ProjectTask>().at(0);
    task.setSortOrder(task.sortOrder() + 1);
    context.save();
}

ChildProcess::ChildProcess(const std::filesystem::path& store) {
    int input[2], output[2];
    if (::pipe2(input, O_CLOEXEC) != 0 || ::pipe2(output, O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    std::string mode(childMode), file = store.string();
    char* const arguments[] = {program.data(), mode.data(), file.data(), nullptr};
    const int result = posix_spawn(&m_process, program.c_str(), &actions, nullptr, arguments, environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(input[0]);
    ::close(output[1]);
    m_input = input[1];
    m_output = output[0];
    if (result != 0)
        throw std::runtime_error("can't start " + program);
}

ChildProcess::~ChildProcess() {
    kill();
    ::close(m_input);
    ::close(m_output);
}

void ChildProcess::tell(const std::string& line) {
    const std::string bytes = line + "\n";
    if (::write(m_input, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()))
        throw std::runtime_error("the child does not listen");
}

std::string ChildProcess::answer() {
    std::string line;
    for (char byte = 0; ::read(m_output, &byte, 1) == 1 && byte != '\n';)
        line += byte;
    return line;
}

void ChildProcess::signal(int number) {
    ::kill(m_process, number);
}

void ChildProcess::kill() {
    if (m_process < 0)
        return;
    signal(SIGKILL);
    ::waitpid(m_process, nullptr, 0);
    m_process = -1;
}

} // namespace quillorn

int main(int argc, char** argv) {
    quillorn::program = argv[0];
    if (argc == 3 && argv[1] == quillorn::childMode) {
        quillorn::workOnStore(argv[2]);
        return 0;
    }
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
