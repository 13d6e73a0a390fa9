#include "AI/JsonExtraction.h"
#include "Fuzz/Harness.h"

using namespace quillorn;

std::vector<std::string> quillorn::seeds() {
    return {"```json\n{\"a\":1}\n```", "Sure: {\"title\":\"x\",\"tags\":[\"y\"]} Bye", "``` {} ```{", "}{"};
}

/// Absent, or an object that stands in the answer and can be written.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view answer = bytesOf(data, size);
    const auto object = extractJsonObject(answer);
    if (!object)
        return 0;
    require(object->asObject() != nullptr, "no object");
    require(answer.find('{') < answer.rfind('}'), "an object from nowhere");
    require(extractJsonObject(object->text()).has_value() || object->text().find("```") != std::string::npos,
            "does not come back");
    return 0;
}
