#include "CLI/Commands.h"
#include "CLI/Examination.h"
#include "CLI/Output.h"
#include "CLI/ProgressLine.h"
#include "Platform/Calendar.h"
#include "Platform/Clock.h"
#include "Platform/Crypto.h"
#include "Platform/Leftovers.h"
#include "Platform/Paths.h"
#include "Platform/SystemLog.h"
#include "Platform/TerminationSignals.h"

#include <algorithm>
#include <cstdio>
#include <fmt/core.h>

namespace quillorn {

namespace {

void printAsJson(const Examination& examination, bool isFine) {
    Json::Array array;
    for (const Finding& each : examination.findings)
        array.emplace_back(Json::Object{{"subject", each.subject}, {"isFine", each.isFine}, {"text", each.text}});
    const std::string& fault = examination.notificationFault;
    Json::Object notifications{{"canShow", fault.empty()}};
    if (!fault.empty())
        notifications.emplace("reason", fault);
    printJson(
        Json::Object{{"isFine", isFine}, {"findings", std::move(array)}, {"notifications", std::move(notifications)}});
}

} // namespace

ExitStatus examine(bool json) {
    const TerminationSignals signals(endBySignal);
    StandardErrorLog log;
    SystemRandom random;
    const Calendar calendar(currentTimeZone(), currentLocale());
    Examination examination;
    {
        ProgressLine progress;
        progress.show("Looking into the store");
        examination = examine(*systemPaths(), calendar, random, log, SystemClock().now());
    }
    const std::vector<Finding>& findings = examination.findings;
    const bool isFine = std::all_of(findings.begin(), findings.end(), [](const Finding& each) { return each.isFine; });
    if (json)
        printAsJson(examination, isFine);
    else
        for (const Finding& each : findings)
            fmt::print("{:<9} {:<3} {}\n", each.subject, each.isFine ? "ok" : "!!", shown(each.text));
    return isFine ? ExitStatus::success : ExitStatus::failure;
}

} // namespace quillorn
