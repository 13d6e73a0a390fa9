#include "Models/RestrictedStatement.h"

#include "Store/KeyList.h"

#include <string_view>

namespace quillorn {

StatementLoan restrictedStatement(ModelContext& context, std::string sql, const std::vector<RowKey>& keys) {
    const bool lookUp = keys.size() <= keyLookupLimit;
    const std::string_view condition = lookUp ? " IN (SELECT value FROM json_each(?1))" : " IS NOT NULL";
    for (auto at = sql.find("{}"); at != std::string::npos; at = sql.find("{}", at))
        sql.replace(at, 2, condition);
    StatementLoan statement = context.statement(sql);
    if (lookUp)
        statement->bind(1, std::string_view(keyList(keys)));
    return statement;
}

} // namespace quillorn
