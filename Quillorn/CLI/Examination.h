#pragma once

#include "Platform/Date.h"

#include <filesystem>
#include <string>
#include <vector>

namespace quillorn {

class Calendar;
class Paths;
class RandomSource;
class SystemLog;

/// One question about the user's installation, and its answer.
struct Finding {
    std::string subject;
    bool isFine = true;
    /// What is so, or what to do.
    std::string text;
};

struct Examination {
    std::vector<Finding> findings;
    /// Why nobody would be told of due tasks, which is no fault of an installation; empty where they would.
    std::string notificationFault;
};

/// Looks at everything that Quillorn needs, without making or changing anything.
Examination examine(const Paths& paths, const Calendar& calendar, RandomSource& random, SystemLog& log, Date now);

} // namespace quillorn
