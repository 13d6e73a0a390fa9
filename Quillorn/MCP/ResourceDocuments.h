#pragma once

#include "Platform/Clock.h"

#include <string>

namespace quillorn {

class Calendar;
class ModelContainer;
class ModelContext;
class Project;
class Text;

/// What the resources need of the outside world. Referred to, not owned.
struct ResourceEnvironment {
    ModelContainer& container;
    const Clock& clock;
    const Text& text;
    const Calendar& calendar;
};

/// What a document is made of.
struct DocumentContext {
    ModelContext& context;
    Date now;
    const Text& text;
    const Calendar& calendar;
};

// JSON documents, in which a missing value is null. Their items are the records of the REST API; time entries come with
// the names of what they are on.

std::string overviewDocument(const DocumentContext& work);
std::string todayDocument(const DocumentContext& work);
std::string overdueDocument(const DocumentContext& work);
std::string runningTimersDocument(const DocumentContext& work);
std::string pinnedNotesDocument(const DocumentContext& work);
std::string projectDocument(const DocumentContext& work, Project& project);

} // namespace quillorn
