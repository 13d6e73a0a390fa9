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

void printFindings(const std::vector<Finding>& findings, bool isFine) {
    Json::Array array;
    for (const Finding& each : findings)
        array.emplace_back(Json::Object{{"subject", each.subject}, {"isFine", each.isFine}, {"text", each.text}});
    printJson(Json::Object{{"isFine", isFine}, {"findings", std::move(array)}});
}

} // namespace

ExitStatus examine(bool json) {
    const TerminationSignals signals(endBySignal);
    StandardErrorLog log;
    SystemRandom random;
    const Calendar calendar(currentTimeZone(), currentLocale());
    std::vector<Finding> findings;
    {
        ProgressLine progress;
        progress.show("Looking into the store");
        findings = examine(*systemPaths(), calendar, random, log, SystemClock().now());
    }
    const bool isFine = std::all_of(findings.begin(), findings.end(), [](const Finding& each) { return each.isFine; });
    if (json)
        printFindings(findings, isFine);
    else
        for (const Finding& each : findings)
            fmt::print("{:<9} {:<3} {}\n", each.subject, each.isFine ? "ok" : "!!", shown(each.text));
    return isFine ? ExitStatus::success : ExitStatus::failure;
}

} // namespace quillorn
