#include "Models/RestrictedStatement.h"

#include "Store/KeyCondition.h"

#include <string_view>

namespace quillorn {

StatementLoan restrictedStatement(ModelContext& context, std::string sql, const std::vector<RowKey>& keys) {
    const KeyCondition condition(keys);
    for (auto at = sql.find("{}"); at != std::string::npos; at = sql.find("{}", at))
        sql.replace(at, 2, condition.sql());
    StatementLoan statement = context.statement(sql);
    statement->bindAll(condition.values());
    return statement;
}

} // namespace quillorn
