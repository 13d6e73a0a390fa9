#include "CLI/Output.h"
#include "CLI/StoreWork.h"
#include "CLI/Table.h"
#include "CLI/TimeCommands.h"
#include "CLI/Words.h"
#include "Records/RecordSearch.h"

#include <fmt/core.h>

namespace quillorn {

ExitStatus searchEverything(const std::vector<std::string>& words, bool json, const ProcessInfo& process) {
    return withStore(process, ModelContext::Intent::read, [&](StoreWork& work) {
        const auto found = searchRecords(work.context, joined(words), work.text());
        if (json) {
            Json::Array list;
            for (const FoundRecord& each : found)
                list.emplace_back(Json::Object{
                    {"kind", nameOf(each.kind)}, {"id", each.id.string()}, {"title", each.title}, {"text", each.text}});
            printJson(list);
            return ExitStatus::success;
        }
        using enum Table::Column::Align;
        using enum Table::Column::Cut;
        Table table({{"Kind"}, {"Id"}, {"What", left, ifNarrow}, {"Text", left, ifNarrow}});
        for (const FoundRecord& each : found) {
            const std::string text = each.text == each.title ? std::string() : each.text;
            table.add({{std::string(nameOf(each.kind)), Paint::cyan},
                       {each.id.string(), shortId(each.id), Paint::dim},
                       each.title,
                       {each.text, text}});
        }
        if (table.isEmpty() && isForPeople())
            fmt::print("Nothing has \"{}\"\n", shown(joined(words)));
        table.print();
        return ExitStatus::success;
    });
}

} // namespace quillorn
