#include "Platform/ZoneRules.h"

#include "Platform/Calendar.h"
#include "Platform/FileWatch.h"

#include <algorithm>
#include <cctype>
#include <cctz/civil_time.h>
#include <cctz/time_zone.h>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace quillorn {

namespace {

using namespace std::chrono;

constexpr std::string_view zoneFolder = "zoneinfo/";

/// Whether it may be the name of a file in the folder of the zones. The library takes paths and forms of its own, too.
bool isName(std::string_view name) {
    return !name.empty() && !name.starts_with('/') && name.find("..") == std::string_view::npos &&
           std::ranges::all_of(name, [](unsigned char c) {
               return std::isalnum(c) != 0 || c == '_' || c == '+' || c == '-' || c == '/';
           });
}

bool isKnown(std::string_view name) {
    cctz::time_zone zone;
    return isName(name) && cctz::load_time_zone(std::string(name), &zone);
}

/// Of a zone's file, or a name as it is.
std::string nameOf(std::string_view nameOrFile) {
    const std::size_t folder = nameOrFile.rfind(zoneFolder);
    return std::string(folder == std::string_view::npos ? nameOrFile : nameOrFile.substr(folder + zoneFolder.size()));
}

cctz::civil_second civilTime(local_seconds time) {
    return cctz::civil_second() + time.time_since_epoch().count();
}

} // namespace

ZoneRules::ZoneRules(std::string_view name) : m_name(name) {
    cctz::time_zone zone;
    if (!isName(name) || !cctz::load_time_zone(m_name, &zone))
        throw std::runtime_error("Unknown time zone " + m_name);
    m_zone = std::make_shared<const cctz::time_zone>(zone);
}

seconds ZoneRules::offsetAt(sys_seconds time) const {
    return seconds{m_zone->lookup(time).offset};
}

ZoneRules::Reading ZoneRules::read(local_seconds time) const {
    const cctz::time_zone::civil_lookup found = m_zone->lookup(civilTime(time));
    Reading reading{.offset = time.time_since_epoch() - found.pre.time_since_epoch(), .skippedAt = std::nullopt};
    if (found.kind == cctz::time_zone::civil_lookup::SKIPPED)
        reading.skippedAt = found.trans;
    return reading;
}

std::string currentTimeZone(const std::filesystem::path& systemFile) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing here changes the environment
    if (const char* value = std::getenv("TZ")) {
        std::string_view name = value;
        if (name.empty())
            return "UTC"; // POSIX leaves it open, and every C library does this
        if (name.starts_with(':'))
            name.remove_prefix(1);
        if (const std::string known = nameOf(name); isKnown(known))
            return known;
    }
    std::error_code failed;
    const std::string system = nameOf(std::filesystem::read_symlink(systemFile, failed).string());
    return isKnown(system) ? system : "UTC";
}

std::unique_ptr<FileWatch> watchTimeZone(std::function<void(const std::string& name)> changed,
                                         const std::filesystem::path& systemFile) {
    return watchFile(systemFile, [changed = std::move(changed), systemFile] { changed(currentTimeZone(systemFile)); });
}

} // namespace quillorn
