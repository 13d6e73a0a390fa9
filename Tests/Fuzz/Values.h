#pragma once

#include "Platform/Json.h"
#include "Support/CrowdedStore.h"
#include "Support/Dice.h"

#include <functional>
#include <string>
#include <string_view>

namespace quillorn {

/// Values that follow a JSON schema more or less: mostly what it asks for, at times the extremes of that or something
/// else.
class Values {
  public:
    /// `resolve` gives a schema or what it refers to. Ids are those of records or, now and then, of none.
    Values(Dice& dice, const StoreIds& ids, std::function<const Json&(const Json&)> resolve);

    /// `name` tells what ids are for: "taskId" mostly gets that of a task.
    Json value(const Json& schema, std::string_view name);
    /// All required members and some of the others.
    Json::Object object(const Json& schema);
    /// Gives one member another value, or takes it away.
    void change(Json::Object& object, const Json& schema);
    std::string id(std::string_view name);
    std::string text();

  private:
    Json anything();
    Json string(const Json& schema, std::string_view name);

    Dice& m_dice;
    const StoreIds& m_ids;
    std::function<const Json&(const Json&)> m_resolve;
};

} // namespace quillorn
