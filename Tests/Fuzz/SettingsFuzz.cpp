#include "Fuzz/Harness.h"
#include "Models/Settings.h"
#include "Platform/SettingsStore.h"
#include "Support/RecordingLog.h"
#include "Support/TemporaryFolder.h"

#include <map>
#include <optional>

using namespace quillorn;
namespace fs = std::filesystem;

namespace {

/// A value of each type.
const std::map<SettingType, Json> samples{
    {SettingType::boolean, true}, {SettingType::integer, 7},   {SettingType::textList, Json::Array{"a", "b"}},
    {SettingType::text, "YWJj"},  {SettingType::data, "YWJj"}, {SettingType::date, "2026-01-15T12:00:00Z"},
};

std::optional<Json::Object> parsedObject(std::string_view text) {
    try {
        const Json json = Json::parse(text);
        return json.asObject() != nullptr ? std::optional(*json.asObject()) : std::nullopt;
    } catch (const JsonError&) {
        return std::nullopt;
    }
}

/// Every reader gets a value of its type, and what is stored if it is one.
void readAll(SettingsStore& store, const Json::Object& stored) {
    const Settings settings(store);
    for (const Setting& setting : settingsCatalogue) {
        const auto found = stored.find(setting.key);
        const bool isFit = found != stored.end() && isOfType(found->second, setting.type);
        require(settings.isStored(setting) == isFit, "isStored is wrong");
        const Json value = settings.value(setting);
        require(isFit ? value == found->second : value.isNull() || isOfType(value, setting.type), "a wrong value");
        (void)settings.boolean(setting);
        (void)settings.integer(setting);
        (void)settings.text(setting);
        if (isFit)
            require(parseSetting(settingText(value), setting.type) == value, "a value that can't be typed in");
    }
}

/// The text on the command line is no value of the type, or one that can be shown and typed in again.
void readText(std::string_view text) {
    for (const auto& [type, sample] : samples)
        if (const auto value = parseSetting(text, type)) {
            require(isOfType(*value, type), "parseSetting gives another type");
            require(parseSetting(type == SettingType::text ? text : settingText(*value), type) == value, "no way back");
        }
}

fs::path onlyFileSetAside(const fs::path& folder) {
    fs::path found;
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.path().filename().string().find(".broken-") != std::string::npos) {
            require(found.empty(), "set aside twice");
            found = entry.path();
        }
    require(!found.empty(), "a broken file is lost");
    return found;
}

} // namespace

std::vector<std::string> quillorn::seeds() {
    Json::Object all;
    Json::Object ofOtherTypes;
    for (const Setting& setting : settingsCatalogue) {
        all[std::string(setting.key)] = samples.at(setting.type);
        ofOtherTypes[std::string(setting.key)] = Json::Object{{"n", nullptr}, {"d", 0.5}};
    }
    // clang-format off
    return {Json(all).text(Json::Style::pretty), Json(ofOtherTypes).text(),
            R"({"apiPort": 99999999999999999999, "apiPort": -1e400, "x": "\ud83d\ude00\u0000"})",
            "", "{", "[]", "2026-01-15T12:00:00Z", R"(["a"])", "YWI=", "yes"};
    // clang-format on
}

/// A settings file with these bytes is read as it stands, or set aside with every byte of it; nothing gets lost by the
/// next change.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input = bytesOf(data, size);
    readText(input);

    static const TemporaryFolder folder;
    const fs::path file = folder / "Quillorn/settings.json";
    fs::remove_all(file.parent_path());
    fs::create_directories(file.parent_path());
    writeFile(file, input);
    RecordingLog log;
    FileSettings store(file, log);
    const auto object = parsedObject(input);
    readAll(store, object.value_or(Json::Object{}));
    if (object)
        require(readFile(file) == input, "reading changes the file");
    else
        require(!fs::exists(file) && readFile(onlyFileSetAside(file.parent_path())) == input, "a broken file is lost");

    store.set("added", 1);
    Json::Object expected = object.value_or(Json::Object{});
    expected["added"] = 1;
    require(parsedObject(readFile(file)) == expected, "a change changes something else");
    require(store.value("added") == Json(1), "a change is not seen");
    return 0;
}
