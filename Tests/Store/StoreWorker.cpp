#include "StoreWorker.h"

#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <gmock/gmock.h>
#include <iostream>
#include <sstream>

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
        if (command == "increment") {
            increment(*container, std::stoi(argument));
        } else if (command == "churn") {
            int times = 0;
            words >> times;
            churn(file, argument, times);
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

StoreWorker::StoreWorker(const std::filesystem::path& store)
    : ChildProcess({.program = program, .arguments = {std::string(childMode), store.string()}}) {}

void increment(ModelContainer& container, int times) {
    for (; times > 0; --times) {
        ModelContext context(container, ModelContext::Intent::update);
        ProjectTask& task = *context.fetch<ProjectTask>().at(0);
        task.setSortOrder(task.sortOrder() + 1);
        context.save();
    }
}

void churn(const std::filesystem::path& store, const std::string& name, int times) {
    StoreSurroundings surroundings;
    std::unique_ptr<ModelContainer> container;
    for (int i = 0; i < times; ++i) {
        if (i % 3 == 0) {
            container.reset();
            container = surroundings.open(store);
        }
        change(*container, [&](ModelContext& context) {
            make<Tag>(context, {.name = name + "." + std::to_string(i), .color = std::string(5'000, 'x')});
        });
    }
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
