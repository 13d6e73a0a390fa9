#include "CLI/SentenceReading.h"

#include "AI/AIEnvironment.h"
#include "AI/TaskParsingService.h"
#include "CLI/ProgressLine.h"
#include "Platform/Leftovers.h"
#include "Platform/TerminationSignals.h"

#include <stdexcept>

namespace quillorn {

ParsedTaskResult readByModel(Session& session, const std::string& sentence, const TaskNames& names) {
    const AIEnvironment environment = session.app().aiEnvironment();
    TaskParsingService service(environment.httpClient, environment.settings, environment.clock, environment.calendar);
    std::optional<ParsedTaskResult> result;
    const auto ask = [](TaskParsingService& asked, std::string text, TaskNames offer,
                        std::optional<ParsedTaskResult>& into, RunLoop& until) -> Task<> {
        into = co_await asked.parse(std::move(text), std::move(offer));
        until.stop();
    };
    {
        const TerminationSignals signals(endBySignal);
        ProgressLine progress;
        progress.show("Parsing...");
        TaskScope scope;
        scope.start(ask(service, sentence, names, result, session.mainQueue()));
        session.mainQueue().run();
    }
    if (!result)
        throw std::runtime_error(service.parseError().value_or(""));
    keepNames(*result, names);
    return *result;
}

} // namespace quillorn
